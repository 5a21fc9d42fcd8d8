#pragma once

#include "platform/linux/fonts/installed_fonts.h"

#include <map>
#include <memory>
#include <string_view>
#include <utility>

struct hb_font_t;

namespace glyma::fonts {

/// Lays texts out with single fonts, as the toolkits do. Keeps the fonts that it has opened.
class Shaper {
public:
    Shaper();
    ~Shaper();

    /// Whether the font draws the text without a missing glyph. False for a font that cannot be opened.
    bool draws(const InstalledFont& font, std::string_view text);

private:
    struct Release {
        void operator()(hb_font_t* font) const;
    };
    using Font = std::unique_ptr<hb_font_t, Release>;

    static Font open(const InstalledFont& font);

    std::map<std::pair<std::filesystem::path, int>, Font> fonts_;
};

} // namespace glyma::fonts
