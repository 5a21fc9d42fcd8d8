#pragma once

#include "platform/font_coverage.h"
#include "platform/linux/fonts/installed_fonts.h"
#include "platform/linux/fonts/shaper.h"
#include "preferences/log.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace glyma::fonts {

/// Knows what the installed fonts can draw: single characters from the lists that fontconfig keeps of each
/// font, sequences from the lists of single fonts and, where those do not decide, from laying the sequence
/// out. Without any usable font nothing could be kept; then everything counts as drawable, and the log says
/// so.
class FontconfigCoverage : public FontCoverage {
public:
    explicit FontconfigCoverage(Log& log);
    /// With the fonts of a configuration file instead of the user's.
    FontconfigCoverage(Log& log, const std::filesystem::path& configuration);

    /// The first call finds the fonts: some 10 ms.
    bool canDraw(std::string_view text) override;

private:
    struct Fonts {
        std::vector<std::uint64_t> characters; ///< one bit for each code point that some font draws
        InstalledFonts installed;
        std::vector<const InstalledFont*> colorFirst;
        bool has(char32_t scalar) const;
    };

    const Fonts& fonts();
    bool canDrawSequence(std::string_view text, const std::u32string& visible);

    Log& log_;
    std::optional<std::filesystem::path> configuration_;
    std::optional<Fonts> fonts_;
    Shaper shaper_;
};

} // namespace glyma::fonts
