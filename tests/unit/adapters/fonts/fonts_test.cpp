#include "platform/linux/fonts/font_families.h"
#include "platform/linux/fonts/fontconfig_coverage.h"
#include "platform/simulated/services.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <initializer_list>

namespace glyma::fonts {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

const fs::path sans = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";
const fs::path mono = "/usr/share/fonts/truetype/dejavu/DejaVuSansMono.ttf";
const fs::path emoji = "/usr/share/fonts/truetype/noto/NotoColorEmoji.ttf";

/// A machine on which only the given fonts are installed.
class FontsTest : public testing::Test {
protected:
    FontsTest() {
        auto pattern = (fs::temp_directory_path() / "glyma-fonts-XXXXXX").string();
        folder_ = mkdtemp(pattern.data());
    }
    ~FontsTest() override { fs::remove_all(folder_); }

    fs::path install(std::initializer_list<fs::path> files, std::string_view rules = "") {
        for (const auto& file : files) {
            if (!fs::exists(file))
                throw std::runtime_error(file.string() +
                                         ": install fonts-dejavu-core and fonts-noto-color-emoji");
            fs::create_symlink(file, folder_ / file.filename());
        }
        const auto configuration = folder_ / "fonts.conf";
        std::ofstream(configuration) << fmt::format(
            "<?xml version=\"1.0\"?><!DOCTYPE fontconfig SYSTEM \"fonts.dtd\"><fontconfig><dir>{0}</dir>"
            "<cachedir>{0}/cache</cachedir>{1}</fontconfig>",
            folder_.string(), rules);
        return configuration;
    }

    simulated::SimulatedSettings settings;
    simulated::SimulatedLog lines;
    DebugConfig debug{settings};
    Log log{lines, debug};

private:
    fs::path folder_;
};

TEST_F(FontsTest, SingleCharactersAreDrawnWhenAnyFontHasThem) {
    FontconfigCoverage text(log, install({sans}));
    for (const auto* drawn : {"A", "é", "→", "❤", "❤️", "\u200B"})
        EXPECT_TRUE(text.canDraw(drawn)) << drawn;
    for (const auto* missing : {"🧑", "𓀀", "一", "\U0010FFFD", ""})
        EXPECT_FALSE(text.canDraw(missing)) << missing;
    EXPECT_THAT(lines.lines(), IsEmpty());
}

TEST_F(FontsTest, SequencesAreDrawnWhenOneFontHasAllOfThem) {
    FontconfigCoverage both(log, install({sans, emoji}));
    for (const auto* drawn : {"🧑", "👩‍🚀", "🇫🇷", "🏴󠁧󠁢󠁥󠁮󠁧󠁿", "1️⃣",
                              "👍🏽", "👁️‍🗨️", "e\u0301"})
        EXPECT_TRUE(both.canDraw(drawn)) << drawn;
    // Each half is in a font of its own.
    EXPECT_TRUE(both.canDraw("Ж"));
    EXPECT_FALSE(both.canDraw("Ж\u200D🧑"));
}

TEST_F(FontsTest, SequencesNeedTheRightFont) {
    FontconfigCoverage text(log, install({sans}));
    EXPECT_FALSE(text.canDraw("👩‍🚀"));
    EXPECT_FALSE(text.canDraw("🇫🇷"));
}

TEST_F(FontsTest, ASequenceMayBeDrawnByAComposedGlyph) {
    FontconfigCoverage text(log, install({mono}));
    ASSERT_FALSE(text.canDraw("\u0342")) << "the font has changed: this test needs another character";
    EXPECT_TRUE(text.canDraw("\u03B1\u0313\u0342"));
    EXPECT_FALSE(text.canDraw("x\u0342"));
}

TEST_F(FontsTest, WithoutFontsNothingIsDroppedAndTheLogSaysSo) {
    FontconfigCoverage none(log, install({}));
    EXPECT_TRUE(none.canDraw("A"));
    EXPECT_TRUE(none.canDraw("👩‍🚀"));
    EXPECT_THAT(lines.lines(), ElementsAre(HasSubstr("no usable font")));
}

TEST_F(FontsTest, AFontOfPlaceholdersDrawsNothing) {
    constexpr auto renamed =
        "<match target=\"scan\"><test name=\"family\"><string>DejaVu Sans Mono</string></test>"
        "<edit name=\"family\" mode=\"assign\"><string>Last Resort</string></edit></match>";
    FontconfigCoverage coverage(log, install({mono, emoji}, renamed));
    EXPECT_FALSE(coverage.canDraw("A"));
    EXPECT_TRUE(coverage.canDraw("🧑"));
}

TEST_F(FontsTest, FamiliesFollowThePresentation) {
    FontFamilies families(install({sans, mono, emoji}));
    EXPECT_EQ(families.emojiFontFamily(), "Noto Color Emoji");
    for (const auto* inColor : {"😀", "❤️", "👩‍🚀", "🇫🇷", "1️⃣"})
        EXPECT_EQ(families.familyFor(inColor), "Noto Color Emoji") << inColor;
    for (const auto* asText : {"A", "❤", "❤\uFE0E", "→", "😀\uFE0E"})
        EXPECT_THAT(families.familyFor(asText), testing::StartsWith("DejaVu Sans")) << asText;
    EXPECT_EQ(families.familyFor("𓀀"), "");
}

TEST_F(FontsTest, FamiliesMakeDoWithWhatIsInstalled) {
    FontFamilies onlyColor(install({emoji}));
    EXPECT_EQ(onlyColor.familyFor("❤"), "Noto Color Emoji");
    EXPECT_EQ(onlyColor.familyFor("Ж"), "");
}

TEST_F(FontsTest, FamiliesWithoutAnyFontAreEmpty) {
    FontFamilies none(install({}));
    EXPECT_EQ(none.emojiFontFamily(), "");
    EXPECT_EQ(none.familyFor("A"), "");
}

TEST_F(FontsTest, TheUsersFontsAreFound) {
    FontconfigCoverage coverage(log);
    EXPECT_TRUE(coverage.canDraw("A"));
    EXPECT_TRUE(FontFamilies().familyFor("A").size() > 1);
}

} // namespace
} // namespace glyma::fonts
