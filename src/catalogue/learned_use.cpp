#include "catalogue/learned_use.h"

#include <algorithm>
#include <chrono>

namespace glyma {

std::int64_t elapsedDays(Timestamp from, Timestamp to) {
    return std::chrono::duration_cast<std::chrono::days>(to - from).count();
}

std::int64_t usageBonus(const EntryUse& use, Timestamp now) {
    const auto often = std::min<std::int64_t>(use.count, 6) * 5;
    if (!use.lastUsed)
        return often;
    const auto days = elapsedDays(*use.lastUsed, now);
    if (days == 0)
        return often + 30;
    if (days < 8)
        return often + 20;
    return days <= 30 ? often + 10 : often;
}

const EntryUse* UseByEntry::find(std::uint32_t entry) const {
    const auto found = std::ranges::lower_bound(uses_, entry, {}, &EntryUse::entry);
    return found != uses_.end() && found->entry == entry ? &*found : nullptr;
}

void UseByEntry::set(const EntryUse& use) {
    const auto place = std::ranges::lower_bound(uses_, use.entry, {}, &EntryUse::entry);
    if (place != uses_.end() && place->entry == use.entry)
        *place = use;
    else
        uses_.insert(place, use);
}

} // namespace glyma
