#include "picker/query_match.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace glyma {
namespace {

/// The text with each emphasised run in brackets.
std::string marked(std::string_view text, std::string_view query, bool isFuzzy = false) {
    std::string result;
    for (const auto& run : QueryMatch(query, isFuzzy).runs(text)) {
        const std::string piece(run.text);
        result += run.isEmphasised ? "[" + piece + "]" : piece;
    }
    return result;
}

TEST(QueryMatch, MarksWhatWasTyped) {
    struct Case {
        const char* text;
        const char* query;
        const char* expected;
    };
    for (const auto& [text, query, expected] : std::vector<Case>{
             {"smiling face", "smil", "[smil]ing face"},
             {"SMILING FACE", "smil", "[SMIL]ING FACE"},
             {"smiling face", "face smil", "[smil]ing [face]"},
             {"smiling face", "  smil  ", "[smil]ing face"},
             {"smiling face", "", "smiling face"},
             {"smiling face", "  ", "smiling face"},
             {"smiling face", "smile", "smiling face"},
             {"heart with art", "art", "heart with [art]"}, // a word's start before the first place
             {"heart", "art", "he[art]"},
             {"smiling face", "smil nothing", "[smil]ing face"}, // each word for itself
             {"", "smil", ""},
             {"o’clock", "o'c", "[o’c]lock"},
         })
        EXPECT_EQ(marked(text, query), expected) << text << " / " << query;
}

TEST(QueryMatch, MarksWholeGraphemeClustersOfTheOriginal) {
    EXPECT_EQ(marked("pin\u0303ata", "pina"), "[pin\u0303a]ta"); // a combining mark goes with its letter
    EXPECT_EQ(marked("pi\u00F1ata", "nat"), "pi[\u00F1at]a");
    EXPECT_EQ(marked("pinata", "pi\u00F1"), "[pin]ata");                  // and is no obstacle in the query
    EXPECT_EQ(marked("\u0130stanbul map", "map"), "\u0130stanbul [map]"); // folds to another length
    EXPECT_EQ(marked("\u1E9Everbal street", "street"), "\u1E9Everbal [street]");
    EXPECT_EQ(marked("😀 grin", "grin"), "😀 [grin]");
    EXPECT_EQ(marked("👩‍🚀 astronaut", "astro"), "👩‍🚀 [astro]naut");
}

TEST(QueryMatch, TreatsBothSmallSigmasAlike) {
    EXPECT_TRUE(QueryMatch("ΟΔΟΣ", false).matches("οδος"));
    EXPECT_TRUE(QueryMatch("οδος", false).matches("ΟΔΟΣ ΔΥΟ"));
}

TEST(QueryMatch, FuzzyWalksButPrefersOnePiece) {
    EXPECT_EQ(marked("smiling face", "sfc", true), "[s]miling [f]a[c]e");
    EXPECT_EQ(marked("smiling face", "sfc", false), "smiling face");
    EXPECT_EQ(marked("smiling face", "cfs", true), "smiling face"); // order counts
    EXPECT_EQ(marked("scarface card", "car", true), "scarface [car]d");
    EXPECT_TRUE(QueryMatch("face sml", true).matches("smiling face"));
    EXPECT_FALSE(QueryMatch("face sml", false).matches("smiling face"));
    EXPECT_FALSE(QueryMatch("ee", true).matches("face")); // a character is used once
}

TEST(QueryMatch, NamesTheFirstMatchingKeywordOnlyForANameThatDoesNotMatch) {
    const std::vector<std::string> keywords = {"joy", "Hap\u0301py", "happiness"};
    const QueryMatch match("happ", false);
    EXPECT_EQ(match.matchedKeyword("grinning face", keywords), "Hap\u0301py");
    EXPECT_EQ(match.matchedKeyword("happy face", keywords), std::nullopt);
    EXPECT_EQ(match.matchedKeyword("grinning face", {}), std::nullopt);
    EXPECT_EQ(QueryMatch("", false).matchedKeyword("grinning face", keywords), std::nullopt);
    EXPECT_EQ(QueryMatch("joy happ", false).matchedKeyword("face", keywords),
              std::nullopt); // one keyword, all words
}

} // namespace
} // namespace glyma
