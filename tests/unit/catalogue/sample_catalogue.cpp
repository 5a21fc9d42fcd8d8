#include "sample_catalogue.h"

#include "catalogue/section_builder.h"
#include "unicode/text.h"

#include <array>

namespace glyma::test {

namespace {

using namespace std::chrono_literals;

constexpr std::array<std::string_view, 34> words{"smile",
                                                 "smiling",
                                                 "face",
                                                 "grin",
                                                 "grinning",
                                                 "heart",
                                                 "hearts",
                                                 "red",
                                                 "a",
                                                 "e",
                                                 "ae",
                                                 "aaa",
                                                 "aaab",
                                                 "café",
                                                 "Crème",
                                                 "ﬁre",
                                                 "한글",
                                                 "각",
                                                 "가",
                                                 "e\u20E3",
                                                 "\r\n",
                                                 "x\r\ny",
                                                 "g\u0327\u0301",
                                                 "क्षि",
                                                 "”quoted“",
                                                 "1",
                                                 "12th",
                                                 "O'Neil",
                                                 "\U0001F600",
                                                 "👩‍🚀",
                                                 "Ελλάς",
                                                 "longlonglonglong1",
                                                 "keyword,odd",
                                                 "ÿ"};

template<typename Values>
const auto& pick(const Values& values, std::mt19937_64& random) {
    return values[random() % std::size(values)];
}

std::string phrase(std::mt19937_64& random, unsigned most) {
    std::string result(pick(words, random));
    for (auto more = random() % most; more > 0; --more)
        result += (random() % 8 == 0 ? "-" : " ") + std::string(pick(words, random));
    return result;
}

std::vector<std::string> keywordList(std::mt19937_64& random) {
    std::vector<std::string> keywords(1 + random() % 6);
    for (auto& keyword : keywords)
        if (random() % 10 != 0)
            keyword = phrase(random, 3);
    return keywords;
}

// On both sides of every bound of recency.
std::optional<Timestamp> someTime(std::mt19937_64& random, Timestamp now) {
    constexpr std::array<std::chrono::seconds, 12> ages{0s,        24h - 1s, 24h,           8 * 24h - 1s,
                                                        8 * 24h,   30 * 24h, 31 * 24h - 1s, 31 * 24h,
                                                        400 * 24h, -1h,      -24h,          -90 * 24h};
    return random() % 13 == 0 ? std::nullopt : std::optional(now - pick(ages, random));
}

} // namespace

EmojiEntry makeEntry(std::string character, std::string name, std::vector<std::string> keywords,
                     std::int64_t rank) {
    EmojiEntry entry;
    entry.character = std::move(character);
    entry.foldedName = unicode::fold(name);
    for (const auto& keyword : keywords)
        entry.foldedKeywords.push_back(unicode::fold(keyword));
    entry.name = std::move(name);
    entry.keywords = std::move(keywords);
    entry.popularityRank = rank;
    entry.isCached = true;
    return entry;
}

std::vector<EmojiEntry> SampleCatalogue::indexed() const {
    auto all = keyworded;
    all.insert(all.end(), personal.begin(), personal.end());
    return all;
}

CatalogueIndex SampleCatalogue::index() const {
    UseByEntry use;
    const auto entries = indexed();
    for (std::uint32_t entry = 0; entry < entries.size(); ++entry)
        if (entries[entry].usageCount > 0 || entries[entry].lastUsed)
            use.set({entry, entries[entry].usageCount, entries[entry].lastUsed});
    return {sectionOf(keyworded, true), sectionOf(personal), sectionOf(rest), popularityTotal, use};
}

LearnedTerms SampleCatalogue::learnedTerms() const {
    LearnedTerms learned;
    for (const auto& [term, characters] : terms)
        for (const auto& [character, record] : characters)
            learned.set(term, character, record);
    return learned;
}

SampleCatalogue makeSampleCatalogue(std::mt19937_64& random) {
    SampleCatalogue catalogue;
    catalogue.now = Timestamp(1'800'000'000s);
    catalogue.popularityTotal = static_cast<std::int64_t>(random() % 300);
    const auto fill = [&](std::vector<EmojiEntry>& entries, const std::string& prefix, std::size_t count) {
        for (std::size_t number = 0; number < count; ++number) {
            const bool keyworded = prefix == "k";
            const auto rank =
                keyworded && random() % 2 == 0 ? static_cast<std::int64_t>(random() % 400) : notRanked;
            auto entry = makeEntry(prefix + std::to_string(number), phrase(random, 4),
                                   prefix == "r" ? std::vector<std::string>{} : keywordList(random), rank);
            if (prefix != "r" && random() % 3 == 0) {
                entry.usageCount = static_cast<std::int64_t>(random() % 10);
                entry.lastUsed = someTime(random, catalogue.now);
            }
            entry.isCached = prefix != "r";
            entries.push_back(std::move(entry));
        }
    };
    fill(catalogue.keyworded, "k", 1 + random() % 200);
    fill(catalogue.personal, "p", random() % 20);
    fill(catalogue.rest, "r", random() % 150);
    for (auto number = 0; number < 60; ++number)
        catalogue.terms[unicode::fold(phrase(random, 2)).substr(0, 1 + random() % 8)]
                       ["kpr"[random() % 3] + std::to_string(random() % 100)] = {
            static_cast<std::int64_t>(1 + random() % 7),
            someTime(random, catalogue.now).value_or(catalogue.now)};
    return catalogue;
}

std::string makeQuery(std::mt19937_64& random) {
    std::string query;
    for (auto terms = random() % 4 == 0 ? 1 + random() % 6 : 1; terms > 0; --terms) {
        const std::string word(random() % 6 == 0 ? phrase(random, 2) : pick(words, random));
        const auto characters = unicode::graphemes(word);
        const auto from = random() % 2 == 0 ? 0 : random() % characters.size();
        const auto length = 1 + random() % (characters.size() - from);
        for (auto at = from; at < from + length; ++at)
            if (random() % 12 != 0) // leaves gaps that only a fuzzy search bridges
                query += characters[at];
        if (terms > 1)
            query += random() % 5 == 0 ? "  " : " ";
    }
    return random() % 20 == 0 ? " " + query + " " : query;
}

} // namespace glyma::test
