#include "data/records.h"

#include "unicode/text.h"

#include <fmt/format.h>

namespace glyma {

UnicodeChar makeUnicodeChar(std::string character, std::string name, std::vector<std::string> keywords,
                            std::string unicodeBlock) {
    UnicodeChar record;
    record.keywordsRaw = fmt::format("{}", fmt::join(keywords, ","));
    record.searchBagOfWords = unicode::withStraightQuotes(
        keywords.empty() ? name : fmt::format("{} {}", name, fmt::join(keywords, " ")));
    record.character = std::move(character);
    record.name = std::move(name);
    record.keywords = std::move(keywords);
    record.unicodeBlock = std::move(unicodeBlock);
    return record;
}

TermSelection makeTermSelection(std::string term, std::string character, Timestamp now) {
    TermSelection record;
    record.id = term + "|" + character;
    record.term = std::move(term);
    record.character = std::move(character);
    record.lastUsed = now;
    return record;
}

} // namespace glyma
