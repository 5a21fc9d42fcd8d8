#include "catalogue/catalogue_values.h"

#include <fmt/format.h>

#include <cstdlib>

namespace glyma {

std::int64_t RankingInfo::total() const {
    std::int64_t sum = 0;
    for (const auto part : {textScore, popularityBonus, usageBonus, termBonus, cacheBonus})
        if (__builtin_add_overflow(sum, part, &sum))
            std::abort();
    return sum;
}

std::string RankingInfo::displayText() const {
    return fmt::format("text:{} pop:{} usage:{} term:{} cache:{} = {}", textScore, popularityBonus,
                       usageBonus, termBonus, cacheBonus, total());
}

std::string identity(const PickerItem& item) {
    if (const auto* special = std::get_if<SpecialEntry>(&item))
        return "s:" + special->id;
    return std::get<EmojiEntry>(item).character;
}

PickerItem toPickerItem(EmojiEntry entry) {
    if (!entry.character.starts_with(specialPrefix))
        return entry;
    return SpecialEntry{entry.character.substr(specialPrefix.size()), std::move(entry.name),
                        std::move(entry.keywords), entry.rankingInfo};
}

} // namespace glyma
