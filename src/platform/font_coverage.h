#pragma once

#include <string_view>

namespace glyma {

/// Which characters the installed fonts can draw. One instance is used from one thread at a time.
class FontCoverage {
public:
    virtual ~FontCoverage() = default;
    /// Whether an installed font draws the text without a missing glyph; a sequence must be drawn by one
    /// font. \param text  one grapheme cluster, UTF-8, not empty.
    virtual bool canDraw(std::string_view text) = 0;
};

} // namespace glyma
