#include "platform/linux/fonts/fontconfig_coverage.h"

#include "unicode/text.h"

#include <algorithm>
#include <array>
#include <set>

namespace glyma::fonts {

namespace {

constexpr std::size_t codePoints = 0x110000;
constexpr std::size_t bitsAWord = 64;
/// A sequence that needs more fonts than this to be tried is none that the user could rely on.
constexpr std::size_t mostFontsLaidOut = 8;

void addCharacters(const FcCharSet* from, std::vector<std::uint64_t>& to) {
    std::array<FcChar32, FC_CHARSET_MAP_SIZE> page{};
    FcChar32 next = 0;
    for (auto base = FcCharSetFirstPage(from, page.data(), &next); base != FC_CHARSET_DONE;
         base = FcCharSetNextPage(from, page.data(), &next)) {
        for (std::size_t word = 0; word < page.size(); word += 2) {
            const auto place = (base + word * 32) / bitsAWord;
            if (place < to.size())
                to[place] |= page[word] | static_cast<std::uint64_t>(page[word + 1]) << 32;
        }
    }
}

} // namespace

FontconfigCoverage::FontconfigCoverage(Log& log)
    : log_(log) {}

FontconfigCoverage::FontconfigCoverage(Log& log, const std::filesystem::path& configuration)
    : log_(log)
    , configuration_(configuration) {}

bool FontconfigCoverage::Fonts::has(char32_t scalar) const {
    return scalar < codePoints && (characters[scalar / bitsAWord] >> (scalar % bitsAWord) & 1) != 0;
}

const FontconfigCoverage::Fonts& FontconfigCoverage::fonts() {
    if (fonts_)
        return *fonts_;
    fonts_.emplace(std::vector<std::uint64_t>(codePoints / bitsAWord),
                   configuration_ ? InstalledFonts(*configuration_) : InstalledFonts());
    // The styles of a family mostly share one list.
    std::set<const FcCharSet*> seen;
    for (const auto& font : fonts_->installed.all()) {
        if (seen.insert(font.characters).second)
            addCharacters(font.characters, fonts_->characters);
        fonts_->colorFirst.push_back(&font);
    }
    std::ranges::stable_partition(fonts_->colorFirst, &InstalledFont::isColor);
    if (fonts_->colorFirst.empty())
        log_.write("Glyma: ⚠️ no usable font is installed; characters are kept without knowing that they "
                   "can be drawn");
    return *fonts_;
}

bool FontconfigCoverage::canDraw(std::string_view text) {
    const auto& known = fonts();
    if (known.colorFirst.empty())
        return true;
    if (text.empty())
        return false;
    const auto first = unicode::firstScalar(text);
    if (unicode::fromScalar(first) == text)
        return known.has(first);
    const auto visible = visibleScalars(text);
    if (visible.size() <= 1)
        return known.has(visible.empty() ? first : visible.front());
    return canDrawSequence(text, visible);
}

bool FontconfigCoverage::canDrawSequence(std::string_view text, const std::u32string& visible) {
    const auto& candidates = fonts().colorFirst;
    if (std::ranges::any_of(candidates, [&](const auto* font) { return font->hasAll(visible); }))
        return true;
    // A font may still have a glyph for what the scalars compose to.
    std::size_t tried = 0;
    for (const auto* font : candidates)
        if (font->hasAll(visible.substr(0, 1)) && tried++ < mostFontsLaidOut && shaper_.draws(*font, text))
            return true;
    return false;
}

} // namespace glyma::fonts
