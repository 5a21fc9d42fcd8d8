#include "platform/linux/fonts/installed_fonts.h"

#include "unicode/text.h"

#include <unicode/uchar.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <optional>

namespace glyma::fonts {

namespace {

std::string_view text(const FcPattern* pattern, const char* property) {
    FcChar8* value = nullptr;
    if (FcPatternGetString(pattern, property, 0, &value) != FcResultMatch)
        return {};
    return reinterpret_cast<const char*>(value);
}

bool flag(const FcPattern* pattern, const char* property) {
    FcBool value = FcFalse;
    return FcPatternGetBool(pattern, property, 0, &value) == FcResultMatch && value == FcTrue;
}

/// These cover everything and draw nothing.
bool standsForMissing(std::string_view family) {
    constexpr std::array<std::string_view, 4> families{"LastResort", "Last Resort", "Adobe Blank",
                                                       "AdobeBlank"};
    return std::ranges::any_of(families, [&](std::string_view name) { return family.starts_with(name); });
}

std::optional<InstalledFont> read(const FcPattern* pattern) {
    InstalledFont font;
    font.family = text(pattern, FC_FAMILY);
    font.file = text(pattern, FC_FILE);
    font.isColor = flag(pattern, FC_COLOR);
    FcPatternGetInteger(pattern, FC_INDEX, 0, &font.index);
    FcCharSet* characters = nullptr;
    if (FcPatternGetCharSet(pattern, FC_CHARSET, 0, &characters) != FcResultMatch || font.file.empty())
        return std::nullopt;
    font.characters = characters;
    // Qt draws outlines and coloured bitmaps, not the X server's bitmap fonts.
    if (!font.isColor && !flag(pattern, FC_OUTLINE))
        return std::nullopt;
    if (standsForMissing(font.family))
        return std::nullopt;
    return font;
}

std::vector<InstalledFont> readAll(const FcFontSet* set) {
    std::vector<InstalledFont> fonts;
    if (set == nullptr)
        return fonts;
    for (int index = 0; index < set->nfont; ++index)
        if (auto font = read(set->fonts[index]))
            fonts.push_back(*std::move(font));
    return fonts;
}

} // namespace

std::u32string visibleScalars(std::string_view text) {
    auto scalars = unicode::scalars(text);
    std::erase_if(scalars, [](char32_t scalar) {
        return u_hasBinaryProperty(static_cast<UChar32>(scalar), UCHAR_DEFAULT_IGNORABLE_CODE_POINT) != 0;
    });
    return scalars;
}

bool InstalledFont::hasAll(const std::u32string& scalars) const {
    return std::ranges::all_of(
        scalars, [&](char32_t scalar) { return FcCharSetHasChar(characters, scalar) == FcTrue; });
}

InstalledFonts::InstalledFonts()
    : configuration_(FcConfigReference(nullptr)) {
    listFonts();
}

InstalledFonts::InstalledFonts(const std::filesystem::path& configuration)
    : configuration_(FcConfigCreate()) {
    const auto name = configuration.string();
    FcConfigParseAndLoad(configuration_.get(), reinterpret_cast<const FcChar8*>(name.c_str()), FcTrue);
    FcConfigBuildFonts(configuration_.get());
    listFonts();
}

void InstalledFonts::listFonts() {
    if (!configuration_)
        return;
    fonts_ = readAll(FcConfigGetFonts(configuration_.get(), FcSetSystem));
    auto own = readAll(FcConfigGetFonts(configuration_.get(), FcSetApplication));
    fonts_.insert(fonts_.end(), std::make_move_iterator(own.begin()), std::make_move_iterator(own.end()));
}

std::vector<InstalledFont> InstalledFonts::preferred(const char* family) {
    const std::unique_ptr<FcPattern, Release> wanted(FcPatternCreate());
    FcPatternAddString(wanted.get(), FC_FAMILY, reinterpret_cast<const FcChar8*>(family));
    FcConfigSubstitute(configuration_.get(), wanted.get(), FcMatchPattern);
    FcDefaultSubstitute(wanted.get());
    FcResult result{};
    sorted_.emplace_back(FcFontSort(configuration_.get(), wanted.get(), FcTrue, nullptr, &result));
    return readAll(sorted_.back().get());
}

} // namespace glyma::fonts
