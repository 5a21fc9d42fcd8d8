#include "catalogue/byte_scan.h"
#include "catalogue/fuzzy_score.h"
#include "catalogue/ranking.h"
#include "catalogue/section_builder.h"
#include "sample_catalogue.h"
#include "unicode/text.h"

#include <gtest/gtest.h>

namespace glyma {
namespace {

struct Row {
    std::string character;
    RankingInfo info;
    bool operator==(const Row&) const = default;
    friend void PrintTo(const Row& row, std::ostream* stream) {
        *stream << row.character << " " << row.info.displayText();
    }
};

std::vector<Row> searched(const test::SampleCatalogue& catalogue, const CatalogueIndex& index,
                          const LearnedTerms& learned, const std::string& text, bool fuzzy, bool withRest) {
    const QueryTerms query(text);
    const auto rest = withRest ? matchRest(index.rest(), query, fuzzy) : std::vector<TextMatch>{};
    std::vector<Row> rows;
    for (const auto& entry : rank(index, matchIndexed(index, query, fuzzy), rest,
                                  learned.bonuses(query.folded(), catalogue.now), catalogue.now))
        rows.push_back({std::string(index.character(entry.entry)), entry.info()});
    return rows;
}

std::vector<Row> expected(const test::SampleCatalogue& catalogue, const std::string& text, bool fuzzy,
                          bool withRest) {
    auto entries = catalogue.indexed();
    const auto terms = reference::queryTerms(unicode::fold(text));
    if (withRest && !terms.empty())
        for (const auto& entry : catalogue.rest)
            if (reference::storeFinds(entry, terms))
                entries.push_back(entry);
    auto scored = reference::scoreEntries(entries, text,
                                          {fuzzy, catalogue.popularityTotal, catalogue.terms, catalogue.now});
    reference::sortScored(scored);
    std::vector<Row> rows;
    for (const auto& one : scored)
        rows.push_back({one.entry->character, one.info});
    return rows;
}

TEST(SearchComparison, FastSearchRanksAsThePlainRulesDo) {
    std::mt19937_64 random(20240229);
    std::size_t nonEmpty = 0;
    for (auto round = 0; round < 30; ++round) {
        const auto catalogue = test::makeSampleCatalogue(random);
        const auto index = catalogue.index();
        const auto learned = catalogue.learnedTerms();
        for (auto number = 0; number < 100; ++number) {
            const auto query = test::makeQuery(random);
            for (const auto fuzzy : {false, true})
                for (const auto withRest : {false, true}) {
                    const auto rows = searched(catalogue, index, learned, query, fuzzy, withRest);
                    ASSERT_EQ(rows, expected(catalogue, query, fuzzy, withRest))
                        << unicode::quoted(query) << " fuzzy " << fuzzy << " rest " << withRest << " round "
                        << round;
                    nonEmpty += !rows.empty();
                }
        }
    }
    EXPECT_GT(nonEmpty, 5000u); // the queries do find something
}

TEST(SearchComparison, FuzzyScoreOfBytesAndOfClustersAgrees) {
    std::mt19937_64 random(7);
    for (auto number = 0; number < 20000; ++number) {
        const auto pattern = unicode::fold(test::makeQuery(random));
        const auto target = unicode::fold(test::makeQuery(random) + " " + test::makeQuery(random));
        ASSERT_EQ(fuzzyScore(pattern, target), reference::fuzzyScore(pattern, target))
            << unicode::quoted(pattern) << " in " << unicode::quoted(target);
    }
}

TEST(ByteScan, FindsEveryPlaceThatTheStandardSearchFinds) {
    std::mt19937_64 random(11);
    for (auto round = 0; round < 3000; ++round) {
        std::string text(random() % 300, ' ');
        for (auto& byte : text)
            byte = static_cast<char>('a' + random() % 2);
        std::string needleText(1 + random() % 12, ' ');
        for (auto& byte : needleText)
            byte = static_cast<char>('a' + random() % 2);
        const auto padded = text + std::string(scanPadding, needleText.front());
        std::vector<std::size_t> places, standard;
        forEachOccurrence({padded.data(), text.size()}, Needle(needleText), [&](std::size_t place) {
            places.push_back(place);
            return place + 1;
        });
        for (auto at = text.find(needleText); at != std::string::npos; at = text.find(needleText, at + 1))
            standard.push_back(at);
        ASSERT_EQ(places, standard) << text << " / " << needleText;
        const auto distance = needleText.size() - 1;
        ASSERT_EQ(candidates(padded.data(), needleText.front(), needleText.back(), 0),
                  portableCandidates(padded.data(), needleText.front(), needleText.back(), 0));
        if (text.size() >= distance) {
            ASSERT_EQ(candidates(padded.data(), needleText.front(), needleText.back(), distance),
                      portableCandidates(padded.data(), needleText.front(), needleText.back(), distance));
        }
    }
}

TEST(SearchSection, LongNeedleAtTheVeryEndOfTheTextStaysInside) {
    const std::string name(200, 'z');
    const auto section = sectionOf(std::vector{test::makeEntry("1", name)});
    EXPECT_EQ(matchText(*section, QueryTerms(name), {}), (std::vector<TextMatch>{{0, 130}}));
    EXPECT_EQ(matchText(*section, QueryTerms(name + "z"), {}), (std::vector<TextMatch>{}));
}

TEST(SearchSection, NoMatchCrossesTheEndOfAFieldOrAnEntry) {
    const auto section =
        sectionOf(std::vector{test::makeEntry("1", "ab", {"cd", "ef"}), test::makeEntry("2", "gh")});
    for (const auto* query : {"bc", "abcd", "cdef", "de", "fg", "efgh", "ab cd,", "d,e"})
        for (const auto fuzzy : {false, true})
            EXPECT_TRUE(matchText(*section, QueryTerms(query), {.fuzzy = fuzzy}).empty()) << query;
}

TEST(SearchSection, GivesBackWhatWasPutIn) {
    auto first = test::makeEntry("\U0001F600", "Grinning “face”", {"a", "", "b,c"}, 3);
    first.unicodeBlock = "Emoticons";
    first.foldedKeywords = {"A", "", "B"};
    const CatalogueIndex index(sectionOf(std::vector{first, test::makeEntry("x", "", {})}), nullptr, nullptr,
                               10, {});
    EXPECT_EQ(index.entry(0), first);
    EXPECT_EQ(index.entry(1), test::makeEntry("x", "", {}));
    EXPECT_EQ(index.findIndexed("x"), 1u);
    EXPECT_EQ(index.findIndexed("y"), std::nullopt);
}

} // namespace
} // namespace glyma
