#pragma once

#include "catalogue/import_pipeline.h"
#include "catalogue/store_lifecycle.h"
#include "platform/simulated/services.h"
#include "platform/simulated/virtual_clock.h"
#include "store_fixture.h"

#include <string>
#include <vector>

namespace glyma {

/// Reference files small enough to see through.
class SmallResources {
public:
    SmallResources() {
        write(folder_ / "Blocks.txt", "0000..007F; Basic Latin\n"
                                      "0400..04FF; Cyrillic\n"
                                      "2100..214F; Letterlike Symbols\n"
                                      "2300..23FF; Miscellaneous Technical\n"
                                      "2700..27BF; Dingbats\n"
                                      "2800..28FF; Braille Patterns\n"
                                      "13000..1342F; Egyptian Hieroglyphs\n"
                                      "1F100..1F1FF; Enclosed Alphanumeric Supplement\n"
                                      "1F600..1F64F; Emoticons\n");
        write(folder_ / "UnicodeData.txt", "0031;DIGIT ONE;Nd\n"
                                           "0040;COMMERCIAL AT;Po\n"
                                           "0041;LATIN CAPITAL LETTER A;Lu\n"
                                           "0416;CYRILLIC CAPITAL LETTER ZHE;Lu\n"
                                           "2122;TRADE MARK SIGN;So\n"
                                           "2318;PLACE OF INTEREST SIGN;So\n"
                                           "2764;HEAVY BLACK HEART;So\n"
                                           "13000;EGYPTIAN HIEROGLYPH A001;Lo\n"
                                           "1F1E6;REGIONAL INDICATOR SYMBOL LETTER A;So\n"
                                           "1F600;GRINNING FACE;So\n"
                                           "1F601;GRINNING FACE WITH SMILING EYES;So\n"
                                           "1F602;FACE WITH TEARS OF JOY;So\n"
                                           "1F603;SMILING FACE WITH OPEN MOUTH;So\n"
                                           "1F604;SMILING FACE WITH OPEN MOUTH AND SMILING EYES;So\n"
                                           "1F605;SMILING FACE WITH OPEN MOUTH AND COLD SWEAT;So\n");
        write(folder_ / "annotations.json", R"({"annotations": {"annotations": {
            "😀": {"tts": ["grinning face"], "default": ["face", "grin"]},
            "😁": {"tts": ["beaming face"], "default": ["eye"]},
            "❤": {"tts": ["red heart"], "default": ["heart"]},
            "⌘": {"tts": ["looped square"], "default": ["cmd", "key"]},
            "™": {"tts": ["trade mark"]},
            "1️⃣": {"tts": ["keycap: 1"], "default": ["keycap"]},
            "🇦🇨": {"tts": ["flag: Ascension Island"], "default": ["flag"]},
            "😀‍😁": {"tts": ["undrawable pair"], "default": ["pair"]},
            "👩‍🚀": {"tts": ["woman astronaut"], "default": ["rocket"]}
        }}})");
        write(folder_ / "Unikemet.txt",
              "U+13000\tkEH_Desc\tseated man, hand to mouth\nU+13000\tkEH_Func\tclassifier eat\n");
        write(folder_ / "emoji-popularity.json", "[]");
    }

    const std::filesystem::path& path() const { return folder_.path(); }
    void remove(std::string_view name) const { std::filesystem::remove(folder_ / name); }
    void replace(std::string_view name, std::string_view text) const { write(folder_ / name, text); }

private:
    TemporaryFolder folder_;
};

/// A store to import into, and what the import is given.
class ImportTest : public testing::Test {
protected:
    ImportTest() {
        debug.setDebugLogsEnabled(true);
        fonts.missing = {"😁", "😀‍😁"};
        std::filesystem::create_directory(folder);
    }

    ImportPipeline pipeline() {
        return {resources, fonts, log, [this](std::string_view phase) { phases.emplace_back(phase); }};
    }
    std::filesystem::path storeFile() const { return folder / "Glyma.store"; }
    std::vector<std::string> filesInFolder() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(folder))
            names.push_back(entry.path().filename().string());
        return names;
    }
    StoreLifecycle lifecycle() { return {folder, resources, settings, clock, log}; }

    TemporaryFolder place;
    /// A folder of its own, because an earlier layout had its store above.
    std::filesystem::path folder = place / "Glyma";
    SmallResources files;
    ResourceLocator resources{files.path()};
    simulated::SimulatedFonts fonts;
    simulated::SimulatedSettings settings;
    simulated::VirtualClock clock; ///< 2024-05-01, noon
    simulated::SimulatedLog lines;
    DebugConfig debug{settings};
    Log log{lines, debug};
    std::vector<std::string> phases;
};

} // namespace glyma
