#pragma once

#include "catalogue/query_terms.h"
#include "catalogue/search_section.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

namespace glyma {

/// An entry that a query's text matches.
struct TextMatch {
    std::uint32_t entry;
    std::int32_t score;
    bool operator==(const TextMatch&) const = default;
};

struct MatchRules {
    bool fuzzy = false;
    /// So many terms, the first ones, must stand in the name as they are; the others may match by any rule.
    std::size_t termsInName = 0;
};

/// Scores every entry whose name or keywords match all terms: the average of the terms' scores, each decided
/// by the name or else by the first keyword that matches. \return in entry order; none for a query without
/// terms. Any thread.
std::vector<TextMatch> matchText(const SearchSection& section, const QueryTerms& query,
                                 const MatchRules& rules);

/// SectionArrays::letterScores for a section that has none.
std::vector<std::uint8_t> letterScores(const SearchSection& section);

} // namespace glyma
