#include "platform/linux/fonts/shaper.h"

#include <hb.h>

#include <algorithm>
#include <span>

namespace glyma::fonts {

Shaper::Shaper() = default;
Shaper::~Shaper() = default;

void Shaper::Release::operator()(hb_font_t* font) const {
    hb_font_destroy(font);
}

Shaper::Font Shaper::open(const InstalledFont& font) {
    auto* const bytes = hb_blob_create_from_file_or_fail(font.file.c_str());
    if (bytes == nullptr)
        return nullptr;
    // fontconfig keeps the instance of a variable font in the upper half of the index.
    auto* const face = hb_face_create(bytes, static_cast<unsigned>(font.index) & 0xFFFF);
    Font opened(hb_face_get_glyph_count(face) > 0 ? hb_font_create(face) : nullptr);
    hb_face_destroy(face);
    hb_blob_destroy(bytes);
    return opened;
}

bool Shaper::draws(const InstalledFont& font, std::string_view text) {
    const auto [found, isNew] = fonts_.try_emplace({font.file, font.index});
    if (isNew)
        found->second = open(font);
    if (!found->second)
        return false;
    auto* const buffer = hb_buffer_create();
    hb_buffer_add_utf8(buffer, text.data(), static_cast<int>(text.size()), 0, -1);
    hb_buffer_guess_segment_properties(buffer);
    hb_shape(found->second.get(), buffer, nullptr, 0);
    unsigned count = 0;
    const auto* const start = hb_buffer_get_glyph_infos(buffer, &count);
    const std::span glyphs(start, count);
    // After shaping `codepoint` holds the glyph, and glyph 0 of every font is the one for missing characters.
    const auto isDrawn =
        count > 0 && std::ranges::none_of(glyphs, [](const auto& glyph) { return glyph.codepoint == 0; });
    hb_buffer_destroy(buffer);
    return isDrawn;
}

} // namespace glyma::fonts
