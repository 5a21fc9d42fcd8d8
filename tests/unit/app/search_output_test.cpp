#include "app/import_progress.h"
#include "app/search_output.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace glyma {
namespace {

CommandLineRow row(std::string character, std::string name, std::vector<std::string> keywords) {
    return {
        .character = std::move(character),
        .name = std::move(name),
        .keywords = std::move(keywords),
        .unicodeBlock = "Emoticons",
        .ranking = {
            .textScore = 110, .popularityBonus = -3, .usageBonus = 40, .termBonus = 5, .cacheBonus = 150}};
}

TEST(SearchOutput, JsonHasExactlyTheDocumentedKeysInRankOrder) {
    const std::vector rows{row("\U0001F600", "grin \"ning\"", {"a", "b"}),
                           row("line\nline", "snippet \xFF", {})};
    const auto list = nlohmann::json::parse(searchResultsAsJson(rows));
    ASSERT_EQ(list.size(), 2u);
    EXPECT_EQ(list[0], nlohmann::json({{"char", "\U0001F600"},
                                       {"name", "grin \"ning\""},
                                       {"keywords", {"a", "b"}},
                                       {"block", "Emoticons"},
                                       {"text", 110},
                                       {"popularity", -3},
                                       {"usage", 40},
                                       {"term", 5},
                                       {"cache", 150},
                                       {"total", 302}}));
    EXPECT_EQ(list[1]["char"], "line\nline");
    EXPECT_EQ(list[1]["keywords"], nlohmann::json::array());
    EXPECT_EQ(list[1]["name"], "snippet \uFFFD");
    EXPECT_EQ(nlohmann::json::parse(searchResultsAsJson({})), nlohmann::json::array());
}

TEST(SearchOutput, ColumnsLineUpWhateverTheCharacter) {
    const std::vector rows{row("\U0001F600", "grin", {"face"}), row("x\u0301", "letter", {"one", "two"}),
                           row("\u2764\uFE0F", "heart", {}),
                           row("\x1b[2Jline\nline \u2028and much more", "snippet", {"k"}),
                           row("special:random-emoji", "Random emoji", {"r"})};
    EXPECT_EQ(searchResultsAsText(rows, std::nullopt), "\U0001F600            grin          face\n"
                                                       "x\u0301             letter        one, two\n"
                                                       "\u2764\uFE0F            heart\n"
                                                       " [2Jline li…  snippet       k\n"
                                                       "?             Random emoji  r\n");
    const auto narrow = searchResultsAsText(std::vector{row("\U0001F600", "grin", {"keyword"})}, 12);
    EXPECT_EQ(narrow, "\U0001F600  grin  k…\n");
    EXPECT_EQ(searchResultsAsText({}, 80), "");
}

TEST(SearchOutput, WidthsAreThoseOfATerminal) {
    EXPECT_EQ(terminalColumns("abc"), 3u);
    EXPECT_EQ(terminalColumns("\u30C4\U0001F468\u200D\U0001F469"), 4u);
    EXPECT_EQ(terminalColumns("\u00E9e\u0301"), 2u);
    EXPECT_EQ(terminalColumns("1\uFE0F\u20E3\U0001F1EB\U0001F1F7"), 4u);
}

TEST(ImportProgress, TheBarGrowsAndNeverWraps) {
    EXPECT_EQ(progressLine(9, 9, "Done", 80), "[##############################] 9/9 Done");
    EXPECT_EQ(progressLine(3, 9, "Checking", 80), "[##########                    ] 3/9 Checking");
    EXPECT_EQ(progressLine(12, 9, "More", 80).substr(0, 32), progressLine(9, 9, "", 80).substr(0, 32));
    EXPECT_EQ(progressLine(3, 9, "Checking", 20).size(), 19u);
    EXPECT_EQ(progressLine(3, 9, "Checking", 0), "");
}

} // namespace
} // namespace glyma
