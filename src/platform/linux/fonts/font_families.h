#pragma once

#include "platform/linux/fonts/installed_fonts.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace glyma::fonts {

/// Chooses fonts for what the program shows, so that the toolkit need not search: its own fallback costs 4 to
/// 25 ms for each script that it meets first. One thread at a time; the first call of each costs some 10 ms.
class FontFamilies {
public:
    FontFamilies() = default;
    /// With the fonts of a configuration file instead of the user's.
    explicit FontFamilies(const std::filesystem::path& configuration)
        : configuration_(configuration) {}

    /// The family of the colour emoji font; empty without one.
    const std::string& emojiFontFamily();
    /// The family of a font that draws the text: the colour emoji font for text in emoji presentation, else
    /// the first in the order of the user's sans-serif fonts. Empty when no font has all of it.
    const std::string& familyFor(std::string_view text);

private:
    InstalledFonts& installed();
    std::string findFamily(std::string_view text);
    const InstalledFont* emojiFont();

    std::optional<std::filesystem::path> configuration_;
    std::optional<InstalledFonts> installed_;
    std::optional<std::vector<InstalledFont>> emojiFonts_; ///< coloured ones, best first
    std::optional<std::vector<InstalledFont>> textFonts_;
    std::string emojiFamily_;
    std::map<std::string, std::string, std::less<>> families_;
};

/// Whether the text asks to be drawn as an emoji: by U+FE0F, or by default and without U+FE0E.
bool isInEmojiPresentation(std::string_view text);

} // namespace glyma::fonts
