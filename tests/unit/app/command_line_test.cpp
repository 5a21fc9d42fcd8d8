#include "app/command_line.h"
#include "app/diagnosis.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace glyma {
namespace {

std::expected<Command, int> parse(std::vector<std::string> words) {
    words.insert(words.begin(), "glyma");
    std::vector<char*> arguments;
    for (auto& word : words)
        arguments.push_back(word.data());
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    auto command = parseCommandLine(static_cast<int>(arguments.size()), arguments.data());
    const auto output = testing::internal::GetCapturedStdout();
    const auto complaint = testing::internal::GetCapturedStderr();
    if (!command) {
        EXPECT_EQ(complaint.empty(), command.error() == status::done) << output << complaint;
    }
    return command;
}

TEST(CommandLine, WrongUseIsToldFromHelp) {
    const struct {
        std::vector<std::string> words;
        int status;
    } cases[] = {
        {{"--help"}, status::done},
        {{"--version"}, status::done},
        {{"search", "--help"}, status::done},
        {{"search"}, status::wrongUse},
        {{"search", "--limit", "0", "x"}, status::wrongUse},
        {{"search", "--limit", "-1", "x"}, status::wrongUse},
        {{"search", "--limit", "many", "x"}, status::wrongUse},
        {{"search", "--nonsense", "x"}, status::wrongUse},
        {{"nonsense"}, status::wrongUse},
        {{"import", "extra"}, status::wrongUse},
        {{"info", "--limit", "0", "x"}, status::wrongUse},
        {{"info", "--selection", "x"}, status::wrongUse},
        {{"info", "--panel", "--json", "x"}, status::wrongUse},
        {{"quit", "doctor"}, status::wrongUse},
        {{"--json"}, status::wrongUse},
    };
    for (const auto& [words, expected] : cases) {
        const auto command = parse(words);
        ASSERT_FALSE(command) << words.front();
        EXPECT_EQ(command.error(), expected) << words.front();
    }
}

TEST(CommandLine, AQueryIsItsWordsWhereverTheOptionsStand) {
    for (const auto& words : {std::vector<std::string>{"search", "--json", "--limit", "3", "red", "heart"},
                              std::vector<std::string>{"search", "red", "heart", "--limit=3", "--json"}}) {
        const auto command = parse(words);
        ASSERT_TRUE(command);
        const auto& search = std::get<SearchCommand>(*command);
        EXPECT_EQ(search.query, "red heart");
        EXPECT_TRUE(search.json);
        EXPECT_FALSE(search.fuzzy);
        EXPECT_EQ(search.limit, 3u);
    }
    const auto dashes = parse({"search", "--fuzzy", "--", "--x"});
    ASSERT_TRUE(dashes);
    EXPECT_EQ(std::get<SearchCommand>(*dashes).query, "--x");
    EXPECT_TRUE(std::get<SearchCommand>(*dashes).fuzzy);
    EXPECT_TRUE(std::holds_alternative<RunCommand>(parse({}).value()));
    EXPECT_TRUE(std::get<ImportCommand>(parse({"import", "--force"}).value()).force);
}

TEST(Diagnosis, OnlyWhatIsMissingMakesTheDoctorFail) {
    const Diagnosis good{"a", Diagnosis::State::ok, "w", ""};
    const Diagnosis limited{"b", Diagnosis::State::limited, "w", "m"};
    const Diagnosis missing{"c", Diagnosis::State::missing, "why \xFF", "mend"};
    EXPECT_EQ(exitStatus(std::vector{good, limited}), status::done);
    EXPECT_EQ(exitStatus(std::vector{good, missing, limited}), status::failed);
    EXPECT_EQ(diagnosesAsText(std::vector{good, missing}), "ok       a  w\n"
                                                           "missing  c  why \xFF\n"
                                                           "            → mend\n");
    EXPECT_NE(diagnosesAsJson(std::vector{missing}).find("\"state\": \"missing\""), std::string::npos);
}

} // namespace
} // namespace glyma
