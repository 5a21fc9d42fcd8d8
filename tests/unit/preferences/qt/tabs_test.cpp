#include "catalogue/random_picks.h"
#include "preferences/qt/debug_tab.h"
#include "preferences/qt/secure_input_text.h"
#include "preferences/qt/snippet_list.h"
#include "window_fixture.h"

#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <gmock/gmock.h>

namespace glyma::qt {
namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

class TabsTest : public WindowTest {
protected:
    QCheckBox& toggle(const char* name) { return named<QCheckBox>(QString::fromUtf8(name)); }
    QComboBox& choice(const char* name) { return named<QComboBox>(QString::fromUtf8(name)); }
    void press(const char* name) {
        QTest::mouseClick(&named<QPushButton>(QString::fromUtf8(name)), Qt::LeftButton);
    }
    void choose(const char* name, const QString& label) {
        auto& box = choice(name);
        QTest::keyClicks(&box, label.left(2));
        ASSERT_EQ(box.currentText(), label);
    }
    std::string shownText() const {
        QStringList texts;
        for (const auto* label : desk->window.findChildren<QLabel*>())
            if (label->isVisible())
                texts.append(label->text());
        return texts.join(QLatin1Char('\n')).toStdString();
    }
};

// General

TEST_F(TabsTest, EveryGeneralSettingIsAssignedAtOnceAndKept) {
    open("general");
    toggle("Start Glyma at login").click();
    choose("Trigger character", QStringLiteral("Tilde  ~"));
    choose("Tray icon", QStringLiteral("Magic wand"));
    choose("Skin tone", QStringLiteral("Dark"));
    auto& rows = named<QLineEdit>(QStringLiteral("Visible rows"));
    rows.setFocus();
    rows.selectAll();
    QTest::keyClicks(&rows, QStringLiteral("+5"));
    QTest::keyClick(&rows, Qt::Key_Return);
    toggle("Use fuzzy search").click();
    toggle("Random Unicode includes emoji").click();
    const auto expectAll = [&](const UserPreferences& preferences) {
        EXPECT_EQ(preferences.triggerCharacter(), "~");
        EXPECT_EQ(preferences.menuBarIcon(), "wand.and.stars");
        EXPECT_EQ(preferences.skinToneModifier(), "\U0001F3FF");
        EXPECT_EQ(preferences.visiblePickerRows(), 5);
        EXPECT_TRUE(preferences.useFuzzySearch());
        EXPECT_FALSE(preferences.randomUnicodeIncludesEmoji());
    };
    expectAll(desk->preferences);
    EXPECT_TRUE(desk->loginItem.enabled);
    restart();
    expectAll(desk->preferences);
    open("general");
    EXPECT_EQ(choice("Skin tone").currentText(), QStringLiteral("Dark"));
    choose("Skin tone", QStringLiteral("Default"));
    EXPECT_EQ(desk->settings->value("skinToneModifier"), std::nullopt);
}

TEST_F(TabsTest, ControlsFollowWhatIsChangedElsewhere) {
    open("general");
    desk->preferences.setTriggerCharacter("/");
    desk->preferences.setUseFuzzySearch(true);
    desk->preferences.setVisiblePickerRows(9);
    EXPECT_EQ(choice("Trigger character").currentText(), QStringLiteral("Slash  /"));
    EXPECT_TRUE(toggle("Use fuzzy search").isChecked());
    EXPECT_EQ(named<QLineEdit>(QStringLiteral("Visible rows")).text(), QStringLiteral("9"));
}

TEST_F(TabsTest, StoredValuesThatNoChoiceOffersAreShownAndKept) {
    desk->settings->set("triggerCharacter", "x");
    desk->settings->set("menuBarIcon", "<b>&no");
    desk->settings->set("visiblePickerRows", 100);
    restart();
    open("general");
    EXPECT_EQ(choice("Trigger character").currentText(), QStringLiteral("x"));
    EXPECT_EQ(choice("Tray icon").currentText(), QStringLiteral("<b>&no"));
    EXPECT_EQ(named<QLineEdit>(QStringLiteral("Visible rows")).text(), QStringLiteral("100"));
    EXPECT_EQ(desk->preferences.triggerCharacter(), "x");
    EXPECT_EQ(desk->preferences.visiblePickerRows(), 100);
}

TEST_F(TabsTest, RowsOutOfRangeGoBackWhenReturnIsPressedOrTheFieldIsLeft) {
    open("general");
    auto& rows = named<QLineEdit>(QStringLiteral("Visible rows"));
    for (const auto key : {Qt::Key_Return, Qt::Key_Tab})
        for (const char* bad : {"20", "2", "-4", "", "seven", "٧", "99999999999999999999999"}) {
            rows.setFocus();
            rows.setText(QString::fromUtf8(bad));
            QTest::keyClick(&rows, key);
            EXPECT_EQ(rows.text(), QStringLiteral("7")) << bad;
            EXPECT_EQ(desk->preferences.visiblePickerRows(), 7) << bad;
        }
}

TEST_F(TabsTest, ARefusedStartAtLoginGoesBackAndSaysWhy) {
    desk->loginItem.refusal = "The folder cannot be written.";
    open("general");
    toggle("Start Glyma at login").click();
    EXPECT_FALSE(toggle("Start Glyma at login").isChecked());
    EXPECT_THAT(shownText(), HasSubstr(desk->loginItem.refusal.english()));
    desk->loginItem.refusal = {};
    toggle("Start Glyma at login").click();
    EXPECT_TRUE(toggle("Start Glyma at login").isChecked());
    EXPECT_THAT(shownText(), Not(HasSubstr("cannot be written")));
}

// Replacements

class ReplacementsTest : public TabsTest {
protected:
    const std::string one = "00000000-0000-4000-8000-000000000001";
    const std::string two = "00000000-0000-4000-8000-000000000002";
    const std::string three = "00000000-0000-4000-8000-000000000003";

    ReplacementsTest() {
        desk->preferences.setUserReplacements(
            {{one, "Tea", {"tea"}, "☕"}, {two, "", {}, ""}, {three, "Bread", {}, "🍞"}});
        open("replacements");
    }

    SnippetList& list() { return *desk->window.findChild<SnippetList*>(); }
    void select(int row, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::mouseClick(list().viewport(), Qt::LeftButton, modifiers,
                          list().visualRect(list().model()->index(row, 0)).center());
    }
    void fill(const QString& name, const QString& keywords, const QString& text) {
        named<QLineEdit>(QStringLiteral("Name")).setText(name);
        named<QLineEdit>(QStringLiteral("Keywords")).setText(keywords);
        named<QPlainTextEdit>(QStringLiteral("Text")).setPlainText(text);
    }
    std::vector<std::string> names() const {
        std::vector<std::string> found;
        for (const auto& snippet : desk->preferences.userReplacements())
            found.push_back(snippet.name);
        return found;
    }
};

TEST_F(ReplacementsTest, ANewOneIsThereOnlyOnceItIsSaved) {
    press("Add replacement");
    fill(QStringLiteral("Wave"), QStringLiteral(" smile , ,grin"), QStringLiteral("👋\nhello <b>&amp;"));
    press("Cancel");
    EXPECT_THAT(names(), ElementsAre("Tea", "", "Bread"));
    press("Add replacement");
    fill(QStringLiteral("Wave"), QStringLiteral(" smile , ,grin"), QStringLiteral("👋\nhello <b>&amp;"));
    press("Save");
    ASSERT_THAT(names(), ElementsAre("Tea", "", "Bread", "Wave"));
    const auto saved = desk->preferences.userReplacements().back();
    EXPECT_THAT(saved.keywords, ElementsAre("smile", "grin"));
    EXPECT_EQ(saved.text, "👋\nhello <b>&amp;");
    EXPECT_EQ(saved.id.size(), 36u);
    EXPECT_EQ(list().selectedIdentifiers(), std::set{saved.id});
}

TEST_F(ReplacementsTest, ReturnOrADoubleClickEditsInPlace) {
    select(2);
    QTest::keyClick(&list(), Qt::Key_Return);
    EXPECT_EQ(named<QLineEdit>(QStringLiteral("Name")).text(), QStringLiteral("Bread"));
    QTest::keyClicks(&named<QLineEdit>(QStringLiteral("Name")), QStringLiteral("Loaf"));
    QTest::keyClick(qApp->activeModalWidget(), Qt::Key_Return);
    EXPECT_THAT(names(), ElementsAre("Tea", "", "BreadLoaf"));
    // A double click is the second event after a click.
    select(0);
    QTest::mouseDClick(list().viewport(), Qt::LeftButton, {},
                       list().visualRect(list().model()->index(0, 0)).center());
    fill(QStringLiteral("Tee"), QStringLiteral("tee"), QStringLiteral("🍵"));
    press("Save");
    EXPECT_EQ(desk->preferences.userReplacements().front(), (UserReplacement{one, "Tee", {"tee"}, "🍵"}));
}

TEST_F(ReplacementsTest, ReturnSavesANewOne) {
    press("Add replacement");
    fill(QStringLiteral("Wave"), {}, {});
    QTest::keyClick(&named<QLineEdit>(QStringLiteral("Name")), Qt::Key_Return);
    EXPECT_THAT(names(), ElementsAre("Tea", "", "Bread", "Wave"));
}

TEST_F(ReplacementsTest, SelectsAsListsDoAndRemovesWhatIsSelected) {
    auto& remove = named<QPushButton>(QStringLiteral("Remove selected replacements"));
    EXPECT_FALSE(remove.isEnabled());
    select(0);
    select(2, Qt::ControlModifier);
    EXPECT_EQ(list().selectedIdentifiers(), (std::set{one, three}));
    select(0);
    select(1, Qt::ShiftModifier);
    EXPECT_EQ(list().selectedIdentifiers(), (std::set{one, two}));
    remove.click();
    EXPECT_THAT(names(), ElementsAre("Bread"));
    EXPECT_FALSE(remove.isEnabled());
    select(0);
    QTest::keyClick(&list(), Qt::Key_Delete);
    EXPECT_THAT(names(), ElementsAre());
    EXPECT_EQ(desk->settings->value("userReplacements"), json::array()) << "and not the default ones";
}

TEST_F(ReplacementsTest, EmptyFieldsHaveAWordForThem) {
    EXPECT_EQ(list().model()->index(1, 0).data(Qt::AccessibleTextRole).toString(),
              QStringLiteral("Untitled, No text, "));
}

TEST_F(ReplacementsTest, TakesAnyText) {
    press("Add replacement");
    const QString odd =
        QStringLiteral("\"\\\t") + QChar(0xD800) + QChar(0x202E) + QString(20'000, QLatin1Char('x'));
    fill(odd, odd, odd);
    press("Save");
    const auto saved = desk->preferences.userReplacements().back();
    restart();
    EXPECT_EQ(desk->preferences.userReplacements().back(), saved);
}

// Permissions

TEST_F(TabsTest, PermissionsAreShownAsTheyComeAndGo) {
    desk->accessibility.set(
        {.isGranted = false, .finding = "off", .remedy = "Do <this>.", .canBeObtained = true});
    open("permissions");
    EXPECT_THAT(shownText(), HasSubstr("Not Granted"));
    EXPECT_THAT(shownText(), HasSubstr("Do <this>."));
    press("Switch Accessibility On");
    EXPECT_TRUE(desk->permissions.accessibility().isGranted);
    EXPECT_THAT(shownText(), Not(HasSubstr("Not Granted")));
    EXPECT_THROW(named<QPushButton>(QStringLiteral("Switch Accessibility On")), std::runtime_error);
    desk->inputMonitoring.set({.isGranted = false, .finding = "no XTEST", .remedy = {}});
    EXPECT_THAT(shownText(), HasSubstr("Not Granted"));
}

TEST_F(TabsTest, PermissionsAreLookedAtOnlyWhileTheyAreShown) {
    open("permissions");
    const int atFirst = desk->inputMonitoring.checks;
    EXPECT_GT(atFirst, 0);
    QTest::qWait(2300);
    EXPECT_EQ(desk->inputMonitoring.checks, atFirst + 1);
    desk->window.show("general");
    QTest::qWait(2300);
    EXPECT_EQ(desk->inputMonitoring.checks, atFirst + 1);
}

TEST_F(TabsTest, SecureInputNamesItsHolder) {
    open("permissions");
    EXPECT_THAT(shownText(), Not(HasSubstr("Keyboard events are blocked")));
    desk->holdSecureInput(4711, {.exists = true, .name = "evil <img src=x> & co"});
    EXPECT_THAT(shownText(), HasSubstr("Keyboard events are blocked"));
    EXPECT_THAT(shownText(), HasSubstr("<b>evil &lt;img src=x&gt; &amp; co</b>"));

    using Kind = Holder::Kind;
    const std::string fix = "log out and back in.";
    for (const auto& [holder, words] :
         {std::pair<std::optional<Holder>, std::string>{std::nullopt, "doesn't say which app"},
          {Holder{Kind::running, 7, "xterm"}, "names <b>xterm</b>. If it has"},
          {Holder{Kind::system, 7, "locker"}, "names <b>locker</b>, a system process"},
          {Holder{Kind::stale, 7, "x"}, "already quit (pid 7)"},
          {Holder{Kind::attributedToSelf, 7, "x"}, "names <b>Glyma</b> itself"}}) {
        const auto text = holderParagraph(holder).toStdString();
        EXPECT_THAT(text, HasSubstr(words));
        EXPECT_TRUE(text.ends_with(fix)) << text;
    }
}

// Advanced

TEST_F(TabsTest, DebugSwitchesAreAssignedAndKeptButUnredactedLogs) {
    open("advanced");
    for (const char* name : {"Debug logs in the journal", "Include the text you type", "Show caret overlay",
                             "Show ranking info", "Show AX polling indicator", "Show Debug tab"})
        toggle(name).click();
    EXPECT_TRUE(desk->debug.logUnredacted());
    restart();
    EXPECT_TRUE(desk->debug.debugLogsEnabled() && desk->debug.showCaretOverlay() &&
                desk->debug.showRankingInfo() && desk->debug.showPollingIndicator() &&
                desk->debug.showDebugTab());
    EXPECT_FALSE(desk->debug.logUnredacted());
    open("advanced");
    toggle("Include the text you type").click();
    toggle("Debug logs in the journal").click();
    EXPECT_FALSE(toggle("Include the text you type").isChecked());
}

TEST_F(TabsTest, DeletesOnlyOnceItIsConfirmed) {
    open("advanced");
    const auto ask = [&] { press("Delete App Container and Quit…"); };
    ask();
    QTest::keyClick(qApp->activeModalWidget(), Qt::Key_Return);
    EXPECT_EQ(desk->program.deletions, 0) << "Return cancels";
    ask();
    QTest::keyClick(qApp->activeModalWidget(), Qt::Key_Escape);
    EXPECT_EQ(desk->program.deletions, 0);
    ask();
    press("Delete and Quit");
    EXPECT_EQ(desk->program.deletions, 1);
}

// Debug

TEST_F(TabsTest, RandomPicksAreListedNewestFirstAndCleared) {
    desk->debug.setShowDebugTab(true);
    RandomPickHistory emoji(*desk->settings, true);
    emoji.record("🚀", Timestamp());
    emoji.record("👍🏽", Timestamp());
    open("debug");
    auto& list = named<QListWidget>(QStringLiteral("Random Emoji"));
    EXPECT_EQ(list.item(0)->text(), QStringLiteral("👍🏽   U+1F44D U+1F3FD"));
    EXPECT_EQ(list.count(), 2);
    EXPECT_THAT(shownText(), HasSubstr("2 picks"));
    emoji.clear();
    emoji.record("a", Timestamp());
    desk->catalogue.randomPickHistoryDidChange.emit();
    EXPECT_THAT(shownText(), HasSubstr("1 pick\n"));
    press("Clear Random Emoji");
    EXPECT_EQ(list.item(0)->text(), QStringLiteral("No picks recorded yet."));
    EXPECT_EQ(codePoints("a"), QStringLiteral("U+0061"));
}

} // namespace
} // namespace glyma::qt
