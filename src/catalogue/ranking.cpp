#include "catalogue/ranking.h"

#include "catalogue/radix_sort.h"
#include "catalogue/search_scores.h"

#include <algorithm>
#include <bit>
#include <limits>

namespace glyma {

namespace {

RankedEntry* findEntry(std::vector<RankedEntry>& scored, std::uint32_t entry) {
    const auto found = std::ranges::lower_bound(scored, entry, {}, &RankedEntry::entry);
    return found != scored.end() && found->entry == entry ? &*found : nullptr;
}

void addIndexed(std::vector<RankedEntry>& scored, const CatalogueIndex& index,
                const std::vector<TextMatch>& matches) {
    for (const auto& match : matches)
        scored.push_back(
            {match.entry, match.score, index.popularityBonus(match.entry), 0, 0, cacheBonusOfIndexed});
}

void addRest(std::vector<RankedEntry>& scored, const CatalogueIndex& index,
             const std::vector<TextMatch>& matches) {
    auto hidden = index.hiddenRest().begin();
    for (const auto& match : matches) {
        while (hidden != index.hiddenRest().end() && *hidden < match.entry)
            ++hidden;
        if (hidden == index.hiddenRest().end() || *hidden != match.entry)
            scored.push_back({index.restBegin() + match.entry, match.score, 0, 0, 0, 0});
    }
}

/// Few entries were ever used or learned: they are looked up among the matches, not the other way round.
void addLearned(std::vector<RankedEntry>& scored, const CatalogueIndex& index,
                const LearnedTerms::Bonuses& termBonuses, Timestamp now) {
    for (const auto& use : index.use().all())
        if (auto* entry = findEntry(scored, use.entry))
            entry->usage = static_cast<std::int32_t>(usageBonus(use, now));
    for (const auto& [character, bonus] : termBonuses)
        for (const auto number : index.findAll(character))
            if (auto* entry = findEntry(scored, number))
                entry->term = static_cast<std::int32_t>(bonus);
}

std::int32_t total(const RankedEntry& entry) {
    return entry.text + entry.popularity + entry.usage + entry.term + entry.cache;
}

/// Unranked entries come behind all ranked ones.
std::uint64_t rankOrder(const CatalogueIndex& index, std::uint32_t entry, std::uint32_t behindAll) {
    return index.isIndexed(entry) ? std::min(index.rank(entry), behindAll) : behindAll;
}

std::vector<RankedEntry> ordered(const std::vector<RankedEntry>& scored, const CatalogueIndex& index) {
    auto highest = std::numeric_limits<std::int32_t>::min();
    auto lowest = std::numeric_limits<std::int32_t>::max();
    for (const auto& entry : scored) {
        highest = std::max(highest, total(entry));
        lowest = std::min(lowest, total(entry));
    }
    // Key and position share a word: totals span less than 2^31, ranks and positions stay far below 2^16 and
    // 2^17.
    const auto behindAll = index.rankLimit();
    const auto positionBits = static_cast<unsigned>(std::bit_width(scored.size()));
    const auto rankBits = static_cast<unsigned>(std::bit_width(behindAll));
    const auto totalBits =
        static_cast<unsigned>(std::bit_width(static_cast<std::uint32_t>(highest - lowest)));
    std::vector<std::uint64_t> keys;
    keys.reserve(scored.size());
    for (const auto& entry : scored) {
        const auto below = static_cast<std::uint64_t>(highest - total(entry));
        const auto key = below << rankBits | rankOrder(index, entry.entry, behindAll);
        keys.push_back(key << positionBits | keys.size());
    }
    radixSort(keys, positionBits, rankBits + totalBits);

    std::vector<RankedEntry> result;
    result.reserve(scored.size());
    const auto positionMask = (std::uint64_t{1} << positionBits) - 1;
    for (const auto key : keys)
        result.push_back(scored[key & positionMask]);
    return result;
}

} // namespace

std::vector<TextMatch> matchIndexed(const CatalogueIndex& index, const QueryTerms& query, bool fuzzy) {
    auto matches = matchText(index.keyworded(), query, {.fuzzy = fuzzy});
    for (const auto& [entry, score] : matchText(index.personal(), query, {.fuzzy = fuzzy}))
        matches.push_back({index.personalBegin() + entry, score});
    return matches;
}

std::vector<TextMatch> matchRest(const SearchSection& rest, const QueryTerms& query, bool fuzzy) {
    return matchText(rest, query, {.fuzzy = fuzzy, .termsInName = storeQueryTerms});
}

std::vector<RankedEntry> rank(const CatalogueIndex& index, const std::vector<TextMatch>& indexed,
                              const std::vector<TextMatch>& rest, const LearnedTerms::Bonuses& termBonuses,
                              Timestamp now) {
    std::vector<RankedEntry> scored;
    scored.reserve(indexed.size() + rest.size());
    addIndexed(scored, index, indexed);
    addRest(scored, index, rest);
    if (scored.empty())
        return scored;
    addLearned(scored, index, termBonuses, now);
    return ordered(scored, index);
}

} // namespace glyma
