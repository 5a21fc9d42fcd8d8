#pragma once

#include <fontconfig/fontconfig.h>

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace glyma::fonts {

/// The scalars of a text that a font must have a glyph for: without variation selectors, joiners and the
/// other characters that are drawn as nothing by default.
std::u32string visibleScalars(std::string_view text);

/// One face that Qt can draw with.
struct InstalledFont {
    std::string family;
    std::filesystem::path file;
    int index = 0; ///< of the face in the file
    bool isColor = false;
    const FcCharSet* characters = nullptr; ///< lives as long as the InstalledFonts

    bool hasAll(const std::u32string& scalars) const;
};

/// The fonts that fontconfig knows, as they were when this was made. Bitmap fonts of the X server and fonts
/// that only say which character is missing do not count. Any thread, one at a time.
class InstalledFonts {
public:
    /// The user's fonts.
    InstalledFonts();
    /// Those of a configuration file.
    explicit InstalledFonts(const std::filesystem::path& configuration);

    const std::vector<InstalledFont>& all() const { return fonts_; }
    /// In fontconfig's order of preference for a family, which may be generic ("sans-serif"); those that add
    /// no character to the ones before are left out.
    std::vector<InstalledFont> preferred(const char* family);

private:
    struct Release {
        void operator()(FcConfig* configuration) const { FcConfigDestroy(configuration); }
        void operator()(FcPattern* pattern) const { FcPatternDestroy(pattern); }
        void operator()(FcFontSet* set) const { FcFontSetDestroy(set); }
    };

    void listFonts();

    std::unique_ptr<FcConfig, Release> configuration_;
    std::vector<InstalledFont> fonts_;
    std::vector<std::unique_ptr<FcFontSet, Release>> sorted_; ///< own what preferred() gave
};

} // namespace glyma::fonts
