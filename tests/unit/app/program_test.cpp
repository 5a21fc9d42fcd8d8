// The built program, run as its users run it, without a display.
#include "../adapters/xdg/temporary_folder.h"
#include "data/store.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <array>
#include <cstdio>
#include <sys/wait.h>

namespace glyma {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;
using testing::HasSubstr;
using testing::IsEmpty;

struct Outcome {
    int status = -1;
    std::string output;
    std::string complaint;
};

class ProgramTest : public testing::Test {
protected:
    Outcome run(const std::string& arguments) {
        const auto errors = folder.path() / "stderr";
        const auto command =
            "env -u DISPLAY -u WAYLAND_DISPLAY -u DBUS_SESSION_BUS_ADDRESS XDG_RUNTIME_DIR=/nonexistent "
            "GLYMA_DATA_DIR='" +
            data.string() + "' GLYMA_CONFIG_DIR='" + config.string() + "' " + environment + " " +
            GLYMA_PROGRAM + " " + arguments + " 2>'" + errors.string() + "'";
        Outcome outcome;
        auto* pipe = ::popen(command.c_str(), "r");
        std::array<char, 4096> buffer;
        while (const auto count = std::fread(buffer.data(), 1, buffer.size(), pipe))
            outcome.output.append(buffer.data(), count);
        outcome.status = WEXITSTATUS(::pclose(pipe));
        outcome.complaint = xdg::readText(errors);
        return outcome;
    }

    xdg::TemporaryFolder folder;
    fs::path data = folder.path() / "data";
    fs::path config = folder.path() / "config";
    std::string environment;
};

TEST_F(ProgramTest, SearchBuildsTheCatalogueFirstAndAnswersInRankOrder) {
    const auto first = run("search --json --limit 5 heart");
    ASSERT_EQ(first.status, 0) << first.complaint;
    EXPECT_THAT(first.complaint, IsEmpty()) << "no bar where there is no terminal";
    const auto list = json::parse(first.output);
    ASSERT_EQ(list.size(), 5u);
    EXPECT_EQ(list[0]["char"], "\u2764\uFE0F");
    for (std::size_t index = 1; index < list.size(); ++index)
        EXPECT_GE(list[index - 1]["total"], list[index]["total"]);

    EXPECT_EQ(run("search --json --limit 5 heart").output, first.output) << "searching teaches nothing";
    EXPECT_EQ(json::parse(run("search --json qqqqzzzz").output), json::array());
    EXPECT_EQ(run("search qqqqzzzz").status, 0);
    EXPECT_THAT(run("search --limit 1 shrug").output, HasSubstr("Shrug")) << "snippets are searched too";
    EXPECT_EQ(run("search heart >/dev/full").status, 1);
    EXPECT_EQ(run("search").status, 2);
}

TEST_F(ProgramTest, InfoTellsWhatCharactersAre) {
    const auto named = run("info --json 'e\u0301\U0001F44D\U0001F3FDa' 'a'");
    ASSERT_EQ(named.status, 0) << named.complaint;
    const auto list = json::parse(named.output);
    ASSERT_EQ(list.size(), 4u);
    EXPECT_EQ(list[0]["name"], "LATIN SMALL LETTER E + COMBINING ACUTE ACCENT");
    EXPECT_EQ(list[0]["isEnabled"], nullptr);
    EXPECT_EQ(list[1]["char"], "\U0001F44D\U0001F3FD");
    EXPECT_EQ(list[1]["appliedToneName"], "medium skin tone");
    EXPECT_EQ(list[1]["scalars"][1]["hex"], "U+1F3FD");
    EXPECT_EQ(list[1]["utf8"], "F0 9F 91 8D F0 9F 8F BD");
    EXPECT_EQ(list[3]["char"], " ");

    // Nothing that would turn the terminal's text around.
    const auto override = run("info '\u202E'");
    EXPECT_THAT(override.output, testing::StartsWith("[RLO]  "));
    EXPECT_THAT(override.output, testing::Not(HasSubstr("\u202E")));
    EXPECT_EQ(json::parse(run("info --json </dev/null").output), json::array());
    EXPECT_EQ(run("info </dev/null").status, 1);
    EXPECT_EQ(run("info --selection").status, 1) << "there is no display";
    EXPECT_EQ(run("info --panel x").status, 1) << "no program runs";
}

TEST_F(ProgramTest, ImportTellsItsPhasesAndForceKeepsWhatWasLearned) {
    const auto first = run("import");
    ASSERT_EQ(first.status, 0) << first.complaint;
    EXPECT_THAT(first.output, HasSubstr("1/9 Importing Blocks.txt\n2/9 Importing UnicodeData.txt\n3/9 "));
    EXPECT_THAT(first.output, HasSubstr("9/9 Restoring user data\n"));
    EXPECT_THAT(run("import").output, HasSubstr("there already"));

    const auto file = data / "Glyma.store";
    std::int64_t count = 0;
    {
        auto store = Store::open(file).value();
        count = store.characterCount().value();
        ASSERT_TRUE(store.setUsage("\U0001F642", 5, Timestamp(std::chrono::seconds(1'700'000'000))));
    }
    const auto forced = run("import --force");
    ASSERT_EQ(forced.status, 0) << forced.complaint;
    const auto store = Store::open(file).value();
    EXPECT_EQ(store.characterCount().value(), count);
    const auto used = store.usedCharacters().value();
    ASSERT_EQ(used.size(), 1u);
    EXPECT_EQ(used[0].usageCount, 5);
    EXPECT_FALSE(fs::exists(data / "rebuilt"));
}

TEST_F(ProgramTest, WhatCannotWorkIsSaidAndCostsNothing) {
    environment = "GLYMA_RESOURCE_DIR='" + folder.path().string() + "/nothing'";
    const auto unresourced = run("import");
    EXPECT_EQ(unresourced.status, 1);
    EXPECT_THAT(unresourced.complaint, testing::StartsWith("glyma: "));
    environment.clear();

    xdg::writeText(config / "settings.json", "{ damaged");
    EXPECT_EQ(run("search --limit 1 smile").status, 0);
    xdg::writeText(folder.path() / "blocked", "");
    data = folder.path() / "blocked";
    const auto blocked = run("search smile");
    EXPECT_EQ(blocked.status, 1);
    EXPECT_THAT(blocked.complaint, HasSubstr("cannot be written to"));
}

TEST_F(ProgramTest, WithoutADisplayTheDoctorAnswersAndTheProgramSaysWhy) {
    const auto doctor = run("doctor --json");
    EXPECT_EQ(doctor.status, 1);
    const auto findings = json::parse(doctor.output);
    std::map<std::string, std::string> states;
    for (const auto& finding : findings)
        states[finding["name"]] = finding["state"];
    EXPECT_EQ(states["X server"], "missing");
    EXPECT_EQ(states["reference files"], "ok");
    EXPECT_EQ(states["session bus"], "limited");
    EXPECT_FALSE(fs::exists(data)) << "looking changes nothing";

    for (const auto* command : {"", "quit"}) {
        const auto outcome = run(command);
        EXPECT_EQ(outcome.status, 1) << command;
        EXPECT_THAT(outcome.complaint, testing::StartsWith("glyma: ")) << command;
    }
}

} // namespace
} // namespace glyma
