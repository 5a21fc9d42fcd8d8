#include "monitor/selection_dispatch.h"

#include "catalogue/skin_tone.h"
#include "unicode/text.h"

#include <algorithm>

namespace glyma {

Deletion deletionOf(std::string_view trigger, const std::string& query, std::ptrdiff_t keystrokeCount,
                    bool isKeystrokeMode) {
    const auto queryLength = static_cast<std::ptrdiff_t>(unicode::graphemeCount(query));
    const auto typedLength = isKeystrokeMode ? std::max(keystrokeCount, queryLength) : queryLength;
    Deletion deletion{typedLength + 1, std::nullopt};
    if (typedLength == queryLength)
        deletion.expected = std::string(trigger) + query;
    return deletion;
}

std::string textOf(const EmojiEntry& entry, const std::optional<std::string>& skinToneModifier,
                   bool wantsTextStyle) {
    const auto toned = applySkinTone(entry.character, skinToneModifier);
    return wantsTextStyle ? unicode::withoutVariationSelector16(toned) : toned;
}

} // namespace glyma
