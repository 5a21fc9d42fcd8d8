#pragma once

#include "catalogue/catalogue_index.h"
#include "catalogue/learned_terms.h"
#include "catalogue/text_matcher.h"

#include <cstdint>
#include <vector>

namespace glyma {

/// A place in the list of results.
struct RankedEntry {
    std::uint32_t entry; ///< of the CatalogueIndex
    std::int32_t text;
    std::int32_t popularity;
    std::int32_t usage;
    std::int32_t term;
    std::int32_t cache;

    RankingInfo info() const { return {text, popularity, usage, term, cache}; }
    bool operator==(const RankedEntry&) const = default;
};

/// The indexed entries that match the query's text.
std::vector<TextMatch> matchIndexed(const CatalogueIndex& index, const QueryTerms& query, bool fuzzy);
/// The entries of the rest that the store's filter lets through and that match; numbered within the rest.
std::vector<TextMatch> matchRest(const SearchSection& rest, const QueryTerms& query, bool fuzzy);

/// Adds the bonuses and orders: higher totals first, on equal totals the more popular ones, then index order.
/// \param indexed  of matchIndexed.
/// \param rest     of matchRest; entries that are indexed already are left out.
std::vector<RankedEntry> rank(const CatalogueIndex& index, const std::vector<TextMatch>& indexed,
                              const std::vector<TextMatch>& rest, const LearnedTerms::Bonuses& termBonuses,
                              Timestamp now);

} // namespace glyma
