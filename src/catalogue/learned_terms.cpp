#include "catalogue/learned_terms.h"

#include "catalogue/learned_use.h"

#include <algorithm>

namespace glyma {

namespace {

std::int64_t exactBonus(const UsageRecord& record, Timestamp now) {
    const auto often = std::min<std::int64_t>(record.count, 5) * 10;
    const auto days = elapsedDays(record.lastUsed, now);
    if (days == 0)
        return often + 20;
    return days < 8 ? often + 10 : often;
}

std::int64_t longerTermBonus(const UsageRecord& record) {
    return std::min<std::int64_t>(record.count, 3) * 5;
}

} // namespace

void LearnedTerms::set(std::string_view term, std::string_view character, const UsageRecord& record) {
    auto found = terms_.find(term);
    if (found == terms_.end())
        found = terms_.emplace(term, Characters()).first;
    found->second.insert_or_assign(std::string(character), record);
}

LearnedTerms::Bonuses LearnedTerms::bonuses(std::string_view foldedQuery, Timestamp now) const {
    Bonuses bonuses;
    if (foldedQuery.empty())
        return bonuses;
    for (auto term = terms_.lower_bound(foldedQuery); term != terms_.end(); ++term) {
        if (!term->first.starts_with(foldedQuery))
            break;
        const auto isExact = term->first.size() == foldedQuery.size();
        for (const auto& [character, record] : term->second)
            bonuses[character] += isExact ? exactBonus(record, now) : longerTermBonus(record);
    }
    return bonuses;
}

} // namespace glyma
