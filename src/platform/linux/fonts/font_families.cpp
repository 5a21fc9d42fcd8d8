#include "platform/linux/fonts/font_families.h"

#include "unicode/properties.h"
#include "unicode/text.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace glyma::fonts {

namespace {

constexpr char32_t textSelector = 0xFE0E;
constexpr char32_t emojiSelector = 0xFE0F;
constexpr char32_t grinningFace = 0x1F600;

std::vector<InstalledFont> withColor(std::vector<InstalledFont> fonts, bool color) {
    std::erase_if(fonts, [&](const InstalledFont& font) { return font.isColor != color; });
    return fonts;
}

const InstalledFont* firstWith(const std::vector<InstalledFont>& fonts, const std::u32string& scalars) {
    const auto found = std::ranges::find_if(fonts, [&](const auto& font) { return font.hasAll(scalars); });
    return found == fonts.end() ? nullptr : &*found;
}

} // namespace

bool isInEmojiPresentation(std::string_view text) {
    const auto scalars = unicode::scalars(text);
    if (scalars.find(textSelector) != std::u32string::npos)
        return false;
    return scalars.find(emojiSelector) != std::u32string::npos ||
           (!scalars.empty() && unicode::isEmojiPresentation(scalars.front()));
}

InstalledFonts& FontFamilies::installed() {
    if (!installed_) {
        if (configuration_)
            installed_.emplace(*configuration_);
        else
            installed_.emplace();
    }
    return *installed_;
}

const InstalledFont* FontFamilies::emojiFont() {
    if (!emojiFonts_) {
        emojiFonts_ = withColor(installed().preferred("emoji"), true);
        if (const auto* best = firstWith(*emojiFonts_, {grinningFace}))
            emojiFamily_ = best->family;
    }
    return firstWith(*emojiFonts_, {grinningFace});
}

const std::string& FontFamilies::emojiFontFamily() {
    emojiFont();
    return emojiFamily_;
}

const std::string& FontFamilies::familyFor(std::string_view text) {
    auto found = families_.find(text);
    if (found == families_.end())
        found = families_.emplace(text, findFamily(text)).first;
    return found->second;
}

std::string FontFamilies::findFamily(std::string_view text) {
    auto visible = visibleScalars(text);
    if (visible.empty())
        visible = unicode::scalars(text);
    const auto* const emoji = emojiFont();
    if (isInEmojiPresentation(text) && emoji != nullptr && emoji->hasAll(visible))
        return emoji->family;
    if (!textFonts_)
        textFonts_ = withColor(installed().preferred("sans-serif"), false);
    if (const auto* font = firstWith(*textFonts_, visible))
        return font->family;
    // Only a colour font has it, or none.
    const auto* const any = firstWith(*emojiFonts_, visible);
    return any == nullptr ? std::string() : any->family;
}

} // namespace glyma::fonts
