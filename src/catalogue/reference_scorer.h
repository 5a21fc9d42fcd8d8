#pragma once

#include "catalogue/catalogue_values.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

/// The ranking rules as plain as they can be written, on strings. Not part of the program: tests compare the
/// search with them and the benchmarks measure it against them.
namespace glyma::reference {

using LearnedTerms = std::map<std::string, std::map<std::string, UsageRecord>>;

struct Circumstances {
    bool fuzzy = false;
    std::int64_t popularityTotal = 0;
    LearnedTerms terms;
    Timestamp now;
};

struct Scored {
    const EmojiEntry* entry = nullptr;
    std::int64_t total = 0;
    RankingInfo info;
};

std::vector<std::string> queryTerms(const std::string& foldedQuery);
std::optional<std::int64_t> fuzzyScore(const std::string& pattern, const std::string& target);
std::optional<std::int64_t> textScore(const EmojiEntry& entry, const std::vector<std::string>& terms,
                                      bool fuzzy);
/// What the query to the store lets through, for an entry without keywords.
bool storeFinds(const EmojiEntry& entry, const std::vector<std::string>& terms);

/// In the order of the entries.
std::vector<Scored> scoreEntries(const std::vector<EmojiEntry>& entries, const std::string& query,
                                 const Circumstances& circumstances);
void sortScored(std::vector<Scored>& scored);

} // namespace glyma::reference
