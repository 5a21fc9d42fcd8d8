#include "platform/simulated/services.h"
#include "preferences/user_preferences.h"
#include "preferences/uuid.h"
#include "unicode/text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

namespace glyma {
namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::IsEmpty;

class UserPreferencesTest : public testing::Test {
protected:
    /// The settings as the next start of the program finds them.
    UserPreferences load() { return UserPreferences(settings, loginItem, applications, log); }

    simulated::SimulatedSettings settings;
    simulated::SimulatedLoginItem loginItem;
    simulated::SimulatedInstalledApplications applications;
    simulated::SimulatedLog sink;
    DebugConfig debug{settings};
    Log log{sink, debug};
};

TEST_F(UserPreferencesTest, WrongTypesAndAbsurdValuesFallBackAndStayStored) {
    const std::map<std::string, json> wrong{
        {"triggerCharacter", 7},
        {"menuBarIcon", json::array()},
        {"useFuzzySearch", 1},
        {"randomUnicodeIncludesEmoji", "no"},
        {"visiblePickerRows", 7.5},
        {"skinToneModifier", "x"},
        {"characterInfoShortcut", {{"keyCode", 65536}, {"modifierRawValue", 0}, {"display", "X"}}},
        {"userReplacements", {{{"id", "1"}, {"name", "n"}, {"keywords", json::array()}, {"text", "t"}}}},
        {"excludedApps", {{{"bundleID", "a"}, {"name", "A"}, {"isExcluded", "true"}}}},
        {"excludedWebsites", {{{"domain", "a.example"}, {"isExcluded", true}}, {{"domain", "b.example"}}}},
        {"pasteChords", "Ctrl+V"},
    };
    for (const auto& [key, value] : wrong)
        settings.set(key, value);
    const auto preferences = load();
    EXPECT_EQ(preferences.triggerCharacter(), ":");
    EXPECT_EQ(preferences.menuBarIcon(), "trigger");
    EXPECT_FALSE(preferences.useFuzzySearch());
    EXPECT_TRUE(preferences.randomUnicodeIncludesEmoji());
    EXPECT_EQ(preferences.visiblePickerRows(), 7);
    EXPECT_EQ(preferences.skinToneModifier(), std::nullopt);
    EXPECT_EQ(preferences.characterInfoShortcut(), std::nullopt);
    EXPECT_EQ(preferences.userReplacements().size(), 34u);
    EXPECT_THAT(preferences.excludedApps(), IsEmpty());
    EXPECT_EQ(preferences.excludedWebsites().size(), 4u) << "one bad entry fails the list";
    EXPECT_EQ(preferences.pasteChord("mousepad"), (KeyChord{keycode::v, modifier::control}));
    for (const auto& [key, value] : wrong)
        EXPECT_EQ(settings.value(key), value) << key;
}

TEST_F(UserPreferencesTest, LoadsWhatIsUsableOfAStoredValue) {
    const struct {
        const char* key;
        json stored;
        std::string trigger;
        std::int64_t rows;
    } cases[] = {
        {"triggerCharacter", "::", ":", 7},
        {"triggerCharacter", "x", "x", 7},
        {"triggerCharacter", "", ":", 7},
        {"triggerCharacter", "e\u0301a", "e\u0301", 7},
        {"visiblePickerRows", 0, ":", 7},
        {"visiblePickerRows", -3, ":", 7},
        {"visiblePickerRows", 2, ":", 2},
        {"visiblePickerRows", 100, ":", 100},
        {"visiblePickerRows", std::numeric_limits<std::uint64_t>::max(), ":", 7},
    };
    for (const auto& [key, stored, trigger, rows] : cases) {
        settings.remove("triggerCharacter");
        settings.remove("visiblePickerRows");
        settings.set(key, stored);
        const auto preferences = load();
        EXPECT_EQ(preferences.triggerCharacter(), trigger) << stored;
        EXPECT_EQ(preferences.visiblePickerRows(), rows) << stored;
    }
    settings.set("randomUnicodeIncludesEmoji", false);
    settings.set("skinToneModifier", "\U0001F3FD\U0001F3FF");
    EXPECT_FALSE(load().randomUnicodeIncludesEmoji());
    EXPECT_EQ(load().skinToneModifier(), "\U0001F3FD");
}

TEST_F(UserPreferencesTest, EverySettingIsTheSameAfterARestart) {
    const std::vector<UserReplacement> replacements{
        {UuidMaker()(), "Sig \"x\"", {"a", "b,c"}, "line\nline \U0001F600"}};
    const std::vector<ExcludedApp> apps{{"org.example.App", "App", false}};
    const std::vector<ExcludedWebsite> websites{{"example.org", true}};
    const GlobalShortcut shortcut{34, modifier::command | modifier::shift, "Super+Shift+I"};
    {
        auto preferences = load();
        preferences.setTriggerCharacter("~");
        preferences.setUserReplacements(replacements);
        preferences.setMenuBarIcon("sparkles");
        preferences.setUseFuzzySearch(true);
        preferences.setExcludedApps(apps);
        preferences.setExcludedWebsites(websites);
        preferences.setCharacterInfoShortcut(shortcut);
        preferences.setRandomUnicodeIncludesEmoji(false);
        preferences.setVisiblePickerRows(12);
        preferences.setSkinToneModifier("\U0001F3FE");
    }
    auto preferences = load();
    EXPECT_EQ(preferences.triggerCharacter(), "~");
    EXPECT_EQ(preferences.userReplacements(), replacements);
    EXPECT_EQ(preferences.menuBarIcon(), "sparkles");
    EXPECT_TRUE(preferences.useFuzzySearch());
    EXPECT_EQ(preferences.excludedApps(), apps);
    EXPECT_EQ(preferences.excludedWebsites(), websites);
    EXPECT_EQ(preferences.characterInfoShortcut(), shortcut);
    EXPECT_FALSE(preferences.randomUnicodeIncludesEmoji());
    EXPECT_EQ(preferences.visiblePickerRows(), 12);
    EXPECT_EQ(preferences.skinToneModifier(), "\U0001F3FE");

    preferences.setCharacterInfoShortcut(std::nullopt);
    preferences.setSkinToneModifier(std::nullopt);
    preferences.setUserReplacements({});
    EXPECT_EQ(settings.value("characterInfoShortcut"), std::nullopt) << "removed, not emptied";
    EXPECT_EQ(settings.value("skinToneModifier"), std::nullopt);
    EXPECT_THAT(load().userReplacements(), IsEmpty()) << "an empty list is not an absent one";
}

TEST_F(UserPreferencesTest, TellsOfChangesAndOfEveryAssignmentOfSnippets) {
    auto preferences = load();
    int changes = 0;
    int assignments = 0;
    const auto first = preferences.changed.connect([&] { ++changes; });
    const auto second = preferences.userReplacementsAssigned.connect([&] {
        ++assignments;
        EXPECT_TRUE(settings.value("userReplacements")) << "told before it was stored";
    });
    preferences.setUserReplacements(preferences.userReplacements());
    preferences.setTriggerCharacter(":");
    EXPECT_EQ(changes, 0);
    EXPECT_EQ(assignments, 1);
    EXPECT_EQ(settings.value("triggerCharacter"), json(":")) << "an equal value is stored too";
    preferences.setTriggerCharacter("+");
    EXPECT_EQ(changes, 1);
}

TEST_F(UserPreferencesTest, DefaultSnippetsHaveTheirCodePointsAndFreshIdentifiers) {
    const auto snippets = load().userReplacements();
    ASSERT_EQ(snippets.size(), 34u);
    std::set<std::string> ids;
    std::size_t scalars = 0;
    for (const auto& snippet : snippets) {
        EXPECT_EQ(canonicalUuid(snippet.id), snippet.id);
        ids.insert(snippet.id);
        scalars += unicode::scalars(snippet.text).size();
    }
    EXPECT_EQ(ids.size(), 34u);
    EXPECT_EQ(scalars, 308u);
    EXPECT_THAT(snippets[0].keywords, ElementsAre("laugh", "chinese"));
    EXPECT_THAT(snippets[33].keywords, ElementsAre("ASCII", "text", "emoticon"));
    EXPECT_EQ(unicode::scalars(snippets[1].text), U"\u00AF\\\uFF3F(\u30C4)\uFF3F/\u00AF");
    EXPECT_EQ(unicode::scalars(snippets[33].text),
              U"\u0D26\u0D4D\u0D26\u0D3F\u0295\u2022\u1D25\u2022 \u0294");
    EXPECT_FALSE(settings.value("userReplacements")) << "defaults are not written back";
    EXPECT_NE(load().userReplacements()[0].id, snippets[0].id);
}

TEST_F(UserPreferencesTest, ExcludesByDefaultTheInstalledOnesInOrder) {
    applications.identifiers = {"code", "org.gnome.Terminal", "mousepad"};
    const auto preferences = load();
    EXPECT_THAT(preferences.excludedApps(),
                ElementsAre(ExcludedApp{"org.gnome.Terminal", "GNOME Terminal", true},
                            ExcludedApp{"code", "Visual Studio Code", true}));
    applications.identifiers.insert("debian-xterm");
    EXPECT_EQ(load().excludedApps().size(), 3u) << "worked out anew at every start";
}

TEST_F(UserPreferencesTest, StartAtLoginMirrorsTheSession) {
    auto preferences = load();
    EXPECT_TRUE(preferences.setStartAtLogin(true).has_value());
    EXPECT_TRUE(loginItem.enabled);
    EXPECT_TRUE(load().startAtLogin());

    debug.setDebugLogsEnabled(true);
    loginItem.refusal = "the disk is full";
    EXPECT_EQ(preferences.setStartAtLogin(false).error(), "the disk is full");
    EXPECT_TRUE(preferences.startAtLogin()) << "the session still starts it";
    EXPECT_THAT(sink.lines(), testing::Each("Glyma: login item toggle failed — the disk is full"));
    EXPECT_THAT(sink.lines(), testing::SizeIs(2)) << "tried again once, not for ever";
}

TEST_F(UserPreferencesTest, PasteChordsOfTheUserComeBeforeOurs) {
    constexpr KeyChord controlV{keycode::v, modifier::control};
    constexpr KeyChord controlShiftV{keycode::v, modifier::control | modifier::shift};
    constexpr KeyChord shiftInsert{keycode::insert, modifier::shift};
    settings.set("pasteChords",
                 {{"kitty", "shift+insert"}, {"org.example.Shell", "Ctrl+Shift+V"}, {"gvim", "Meta+V"}});
    const auto preferences = load();
    EXPECT_EQ(preferences.pasteChord("kitty"), shiftInsert);
    EXPECT_EQ(preferences.pasteChord("org.example.Shell"), controlShiftV);
    EXPECT_EQ(preferences.pasteChord("gvim"), shiftInsert) << "what does not parse leaves ours in force";
    EXPECT_EQ(preferences.pasteChord("org.gnome.Terminal"), controlShiftV);
    EXPECT_EQ(preferences.pasteChord("debian-xterm"), shiftInsert);
    EXPECT_EQ(preferences.pasteChord("emacsclient"), shiftInsert);
    EXPECT_EQ(preferences.pasteChord(""), controlV);
}

TEST(GlobalShortcut, MatchesOnTheFourModifiersOnly) {
    const GlobalShortcut shortcut{34, modifier::command | modifier::shift | modifier::capsLock,
                                  "Super+Shift+I"};
    EXPECT_TRUE(shortcut.matches(34, modifier::command | modifier::shift));
    EXPECT_TRUE(shortcut.matches(34, modifier::command | modifier::shift | 0x100));
    EXPECT_FALSE(shortcut.matches(34, modifier::command));
    EXPECT_FALSE(shortcut.matches(34, modifier::command | modifier::shift | modifier::option));
    EXPECT_FALSE(shortcut.matches(35, modifier::command | modifier::shift));
}

TEST(Uuid, AcceptsEitherCaseAndNothingElse) {
    EXPECT_EQ(canonicalUuid("0f8fad5b-d9cb-469f-a165-70867728950e"), "0F8FAD5B-D9CB-469F-A165-70867728950E");
    EXPECT_EQ(canonicalUuid("0f8fad5bd9cb469fa16570867728950e"), std::nullopt);
    EXPECT_EQ(canonicalUuid("0f8fad5b-d9cb-469f-a165-70867728950g"), std::nullopt);
    EXPECT_EQ(canonicalUuid("{f8fad5b-d9cb-469f-a165-70867728950e"), std::nullopt);
}

} // namespace
} // namespace glyma
