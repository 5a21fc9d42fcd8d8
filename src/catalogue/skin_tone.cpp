#include "catalogue/skin_tone.h"

#include "unicode/properties.h"
#include "unicode/text.h"

#include <algorithm>

namespace glyma {

std::string applySkinTone(std::string_view character, const std::optional<std::string>& modifier) {
    const auto source = unicode::scalars(character);
    if (!modifier || modifier->empty() || std::ranges::none_of(source, unicode::isEmojiModifierBase))
        return std::string(character);
    const auto tone = unicode::firstScalar(*modifier);
    std::u32string toned;
    for (const auto scalar : source) {
        toned.push_back(scalar);
        if (unicode::isEmojiModifierBase(scalar))
            toned.push_back(tone);
    }
    return unicode::fromScalars(toned);
}

} // namespace glyma
