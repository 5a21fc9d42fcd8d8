#pragma once

#include <QCoreApplication>

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace glyma::qt {

struct SkinTone {
    const char* name;          ///< for tr() of SkinToneMenu
    std::string_view modifier; ///< empty for none
};

/// In menu order.
inline constexpr std::array<SkinTone, 6> skinTones = {{
    {QT_TRANSLATE_NOOP("glyma::qt::SkinToneMenu", "Default"), ""},
    {QT_TRANSLATE_NOOP("glyma::qt::SkinToneMenu", "Light"), "\U0001F3FB"},
    {QT_TRANSLATE_NOOP("glyma::qt::SkinToneMenu", "Medium-light"), "\U0001F3FC"},
    {QT_TRANSLATE_NOOP("glyma::qt::SkinToneMenu", "Medium"), "\U0001F3FD"},
    {QT_TRANSLATE_NOOP("glyma::qt::SkinToneMenu", "Medium-dark"), "\U0001F3FE"},
    {QT_TRANSLATE_NOOP("glyma::qt::SkinToneMenu", "Dark"), "\U0001F3FF"},
}};

/// A raised hand in the tone; without one, in its emoji presentation.
inline std::string skinToneGlyph(std::string_view modifier) {
    return "\U0001F590" + std::string(modifier.empty() ? std::string_view("\uFE0F") : modifier);
}

/// The tone's place in the table; the first for none and for anything that is no modifier.
inline std::size_t skinToneIndex(const std::optional<std::string>& modifier) {
    for (std::size_t index = 1; index < skinTones.size(); ++index)
        if (modifier == skinTones[index].modifier)
            return index;
    return 0;
}

} // namespace glyma::qt
