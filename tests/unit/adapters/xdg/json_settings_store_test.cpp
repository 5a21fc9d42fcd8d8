#include "platform/linux/xdg/json_settings_store.h"
#include "platform/simulated/services.h"
#include "temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <random>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace glyma::xdg {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

class JsonSettingsStoreTest : public testing::Test {
protected:
    JsonSettingsStore open() { return JsonSettingsStore(folder, log); }
    std::vector<std::string> names() const {
        std::vector<std::string> result;
        for (const auto& entry : fs::directory_iterator(folder))
            result.push_back(entry.path().filename());
        std::ranges::sort(result);
        return result;
    }

    TemporaryFolder temporary;
    fs::path folder = temporary.path() / "config" / "glyma";
    fs::path file = folder / "settings.json";
    simulated::SimulatedLog log;
};

TEST_F(JsonSettingsStoreTest, EachChangeIsOnDiskForTheUserAloneWhenTheCallReturns) {
    auto store = open();
    EXPECT_FALSE(fs::exists(folder)) << "reading leaves nothing behind";
    store.set("a", 1);
    EXPECT_EQ(json::parse(readText(file)), json({{"a", 1}}));
    store.set("b", {{"text", "\U0001F600"}});
    store.remove("a");
    EXPECT_EQ(open().value("a"), std::nullopt);
    EXPECT_EQ(open().value("b"), json({{"text", "\U0001F600"}}));
    EXPECT_EQ(fs::status(folder).permissions(), fs::perms::owner_all);
    EXPECT_EQ(fs::status(file).permissions(), fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_THAT(names(), ElementsAre("settings.json"));
}

TEST_F(JsonSettingsStoreTest, TextThatIsNotUtf8IsStoredWithReplacements) {
    auto store = open();
    store.set("a", "x\xFFy");
    store.set("b", 2);
    EXPECT_EQ(open().value("a"), json("x\uFFFDy"));
    EXPECT_EQ(open().value("b"), json(2));
}

TEST_F(JsonSettingsStoreTest, ADamagedFileIsSetAsideAtTheFirstChangeAndNotBefore) {
    for (const std::string contents : {"{\"a\": 1", "[1]", "\xFF\xFE", "{} {}", "null"}) {
        fs::remove_all(folder);
        writeText(file, contents);
        const auto linesBefore = log.lines().size();
        auto store = open();
        EXPECT_EQ(store.value("a"), std::nullopt);
        EXPECT_THAT(store.problem(), testing::Not(IsEmpty()));
        EXPECT_EQ(log.lines().size(), linesBefore + 1);
        EXPECT_EQ(readText(file), contents);
        store.set("b", 2);
        store.set("c", 3);
        EXPECT_THAT(store.problem(), IsEmpty());
        EXPECT_EQ(json::parse(readText(file)), json({{"b", 2}, {"c", 3}}));
        ASSERT_THAT(names(), SizeIs(2));
        EXPECT_THAT(names()[1], testing::StartsWith("settings.json.damaged-"));
        EXPECT_EQ(readText(folder / names()[1]), contents);
    }
}

TEST_F(JsonSettingsStoreTest, SeveralDamagedFilesAreAllKept) {
    for (int round = 0; round < 3; ++round) {
        writeText(file, "damaged " + std::to_string(round));
        open().set("a", round);
    }
    EXPECT_THAT(names(), SizeIs(4));
}

TEST_F(JsonSettingsStoreTest, AnEmptyFileIsAFreshOneAndAPipeDoesNotBlock) {
    writeText(file, "");
    EXPECT_THAT(open().problem(), IsEmpty());
    fs::remove(file);
    ASSERT_EQ(::mkfifo(file.c_str(), 0600), 0);
    auto store = open();
    EXPECT_THAT(store.problem(), testing::Not(IsEmpty()));
    store.set("a", 1);
    EXPECT_EQ(json::parse(readText(file)), json({{"a", 1}}));
}

TEST_F(JsonSettingsStoreTest, WhatCannotBeWrittenIsKeptReportedOnceAndWrittenLater) {
    auto store = open();
    store.set("a", 1);
    // A limit on file sizes stands for a full disk; it holds for root too.
    ASSERT_NE(::signal(SIGXFSZ, SIG_IGN), SIG_ERR);
    rlimit before{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
    const rlimit full{4, before.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &full), 0);
    store.set("a", 2);
    store.set("b", 3);
    store.remove("c");
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &before), 0);

    EXPECT_EQ(store.value("a"), json(2));
    EXPECT_EQ(json::parse(readText(file)), json({{"a", 1}})) << "the old file is whole";
    EXPECT_THAT(names(), ElementsAre("settings.json"));
    EXPECT_THAT(log.lines(), ElementsAre(HasSubstr("failed — ")));
    store.set("d", 4);
    EXPECT_EQ(json::parse(readText(file)), json({{"a", 2}, {"b", 3}, {"d", 4}}));
    EXPECT_THAT(store.problem(), IsEmpty());
}

TEST_F(JsonSettingsStoreTest, AFolderThatCannotBeMadeCostsNoSetting) {
    writeText(folder.parent_path(), "a file where the folder belongs");
    auto store = open();
    store.set("a", 1);
    EXPECT_EQ(store.value("a"), json(1));
    EXPECT_THAT(store.problem(), testing::Not(IsEmpty()));
}

TEST_F(JsonSettingsStoreTest, TwoProcessesDoNotUndoEachOthersChanges) {
    auto first = open();
    auto second = open();
    first.set("a", 1);
    second.set("b", 2);
    first.remove("x");
    EXPECT_EQ(json::parse(readText(file)), json({{"a", 1}, {"b", 2}}));
    EXPECT_EQ(first.value("b"), json(2));
}

TEST_F(JsonSettingsStoreTest, ASymbolicLinkStaysOne) {
    const auto target = temporary.path() / "dotfiles" / "glyma.json";
    writeText(target, "{\"a\": 1}");
    fs::create_directories(folder);
    fs::create_symlink(target, file);
    open().set("b", 2);
    EXPECT_TRUE(fs::is_symlink(file));
    EXPECT_EQ(json::parse(readText(target)), json({{"a", 1}, {"b", 2}}));
}

/// Writes pairs of equal settings of growing size until it is killed.
[[noreturn]] void writeForEver(const fs::path& folder) {
    simulated::SimulatedLog log;
    JsonSettingsStore store(folder, log);
    for (int round = 0;; ++round)
        store.set("pair", {round, std::string(static_cast<std::size_t>(round % 50) * 1000, 'x'), round});
}

TEST_F(JsonSettingsStoreTest, BeingKilledAtAnyMomentLeavesAWholeFile) {
    std::mt19937 random(7);
    bool written = false; // from then on the file must be there
    for (int round = 0; round < 60; ++round) {
        const auto child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0)
            writeForEver(folder);
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 20000));
        ::kill(child, SIGKILL);
        ASSERT_EQ(::waitpid(child, nullptr, 0), child);
        written = written || fs::exists(file);
        if (!written)
            continue;
        const auto contents = json::parse(readText(file), nullptr, false);
        ASSERT_TRUE(contents.is_object());
        ASSERT_EQ(contents["pair"][0], contents["pair"][2]);
    }
    open().set("last", true);
    EXPECT_THAT(names(), ElementsAre("settings.json")) << "what killed writers left is gone";
}

} // namespace
} // namespace glyma::xdg
