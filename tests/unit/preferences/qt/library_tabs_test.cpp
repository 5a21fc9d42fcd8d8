#include "data/store.h"
#include "preferences/qt/check_list.h"
#include "window_fixture.h"

#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <gmock/gmock.h>

namespace glyma::qt {
namespace {

using ::testing::ElementsAre;

std::vector<std::string> titles(const QListView& list) {
    std::vector<std::string> shown;
    for (int row = 0; row < list.model()->rowCount(); ++row)
        shown.push_back(list.model()->index(row, 0).data().toString().toStdString());
    return shown;
}

Qt::CheckState checkOf(const QListView& list, int row) {
    return static_cast<Qt::CheckState>(list.model()->index(row, 0).data(Qt::CheckStateRole).toInt());
}

void click(QListView& list, int row, bool onCheckBox, Qt::KeyboardModifiers modifiers = {}) {
    const auto place = list.visualRect(list.model()->index(row, 0));
    QTest::mouseClick(list.viewport(), Qt::LeftButton, modifiers,
                      onCheckBox ? place.topLeft() + QPoint(18, place.height() / 2) : place.center());
}

class LibraryTabTest : public WindowTest {
protected:
    LibraryTabTest() {
        auto store = Store::open(desk->storeFile()).value();
        const std::vector<UnicodeChar> characters{makeUnicodeChar("←", "left arrow", {"west"}, "Arrows"),
                                                  makeUnicodeChar("→", "right arrow", {}, "Arrows"),
                                                  makeUnicodeChar("↑", "up arrow", {}, "Arrows"),
                                                  makeUnicodeChar("€", "euro sign", {}, "Currency Symbols")};
        EXPECT_TRUE(store.insertCharacters(characters));
        const std::vector<UnicodeBlock> blocks{{"Arrows", 0x2190, 0x21FF, 3, "←", true},
                                               {"Currency Symbols", 0x20A0, 0x20CF, 1, "€", true},
                                               {"Yi Radicals", 0xA490, 0xA4CF, 0, "", false}};
        EXPECT_TRUE(store.insertBlocks(blocks));
        desk->catalogue.start();
        open("unicode");
    }
    CheckList& blocks() { return named<CheckList>("Blocks"); }
    CheckList& characters() { return named<CheckList>("Characters"); }
};

TEST_F(LibraryTabTest, IsDrivenByTheKeyboardAlone) {
    auto& filter = named<QLineEdit>("Filter blocks…");
    filter.setFocus();
    QTest::keyClicks(&filter, "ARR");
    EXPECT_THAT(titles(blocks()), ElementsAre("Arrows"));
    QTest::keyClick(&filter, Qt::Key_Down);
    EXPECT_TRUE(blocks().hasFocus());
    EXPECT_THAT(titles(characters()), ElementsAre("left arrow", "right arrow", "up arrow"));
    filter.clear();
    EXPECT_EQ(blocks().currentIndex().row(), 0) << "the selected block stays selected";

    QTest::keyClick(&blocks(), Qt::Key_Right);
    EXPECT_TRUE(characters().hasFocus());
    QTest::keyClicks(&characters(), "up");
    EXPECT_EQ(characters().currentIndex().row(), 2);
    QTest::keyClick(&characters(), Qt::Key_Space);
    EXPECT_EQ(checkOf(characters(), 2), Qt::Unchecked);
    EXPECT_EQ(checkOf(blocks(), 0), Qt::PartiallyChecked);
    QTest::keyClick(&characters(), Qt::Key_Left);
    EXPECT_TRUE(blocks().hasFocus());
    QTest::keyClick(&blocks(), Qt::Key_Space);
    EXPECT_EQ(checkOf(characters(), 2), Qt::Checked);
    QTest::keyClick(&blocks(), Qt::Key_Space);
    EXPECT_EQ(checkOf(blocks(), 0), Qt::Unchecked);
    desk->clock.advance(std::chrono::seconds(1));
    EXPECT_EQ(desk->catalogue.allKeywordedCharacters().front().character, "special:random-emoji");
}

TEST_F(LibraryTabTest, AClickOnACheckBoxSwitchesAllSelectedOnesAndKeepsThemSelected) {
    click(blocks(), 0, false);
    click(characters(), 0, false);
    click(characters(), 1, false, Qt::ControlModifier);
    click(characters(), 1, true);
    EXPECT_EQ(checkOf(characters(), 0), Qt::Unchecked);
    EXPECT_EQ(checkOf(characters(), 1), Qt::Unchecked);
    EXPECT_EQ(checkOf(characters(), 2), Qt::Checked);
    EXPECT_EQ(characters().selectionModel()->selectedIndexes().size(), 2);
    click(characters(), 2, true);
    EXPECT_EQ(checkOf(characters(), 2), Qt::Unchecked);
    EXPECT_EQ(characters().selectionModel()->selectedIndexes().size(), 2);
    EXPECT_EQ(checkOf(blocks(), 0), Qt::Unchecked);
    click(blocks(), 2, true); // has nothing to switch
    EXPECT_EQ(checkOf(blocks(), 2), Qt::Unchecked);
}

TEST_F(LibraryTabTest, ScreenReadersHearRowsAndTheirState) {
    click(blocks(), 0, false);
    auto* row = QAccessible::queryAccessibleInterface(&characters())->child(0);
    ASSERT_NE(row, nullptr);
    EXPECT_EQ(row->text(QAccessible::Name), "← left arrow");
    EXPECT_TRUE(row->state().checked);
    QTest::keyClick(&characters(), Qt::Key_Space);
    auto* block = QAccessible::queryAccessibleInterface(&blocks())->child(0);
    EXPECT_EQ(block->text(QAccessible::Name), "Arrows (3 of 3)");
}

TEST_F(LibraryTabTest, OnlyTheTestFieldLetsThePickerOpen) {
    auto& field = named<QLineEdit>("Test Picker");
    EXPECT_FALSE(desk->flags.isTestFieldFocused);
    field.setFocus();
    EXPECT_TRUE(desk->flags.isTestFieldFocused);
    named<QLineEdit>("Filter blocks…").setFocus();
    EXPECT_FALSE(desk->flags.isTestFieldFocused);
    field.setFocus();
    desk->window.show("general");
    EXPECT_FALSE(desk->flags.isTestFieldFocused);
}

class ExclusionsTabTest : public WindowTest {
protected:
    ExclusionsTabTest() {
        desk->preferences.setExcludedApps({{"xterm", "XTerm"}, {"kitty", "kitty"}, {"gvim", "GVim"}});
        desk->preferences.setExcludedWebsites({{"github.com"}});
        desk->applications.identifiers = {"xterm", "org.example.Editor", "org.example.Mail"};
        open("exclusions");
    }
    CheckList& apps() { return named<CheckList>("Excluded Applications"); }
    QDialog& sheet() { return *desk->window.findChildren<QDialog*>().last(); }
    void press(const QString& name) { named<QPushButton>(name).click(); }
    std::vector<std::string> domains() const {
        std::vector<std::string> result;
        for (const auto& website : desk->preferences.excludedWebsites())
            result.push_back(website.domain);
        return result;
    }
};

TEST_F(ExclusionsTabTest, SpaceSwitchesAndDeleteRemovesOneAfterAnother) {
    apps().setFocus();
    apps().setCurrentIndex(apps().model()->index(0, 0));
    QTest::keyClick(&apps(), Qt::Key_Space);
    EXPECT_FALSE(desk->preferences.excludedApps()[0].isExcluded);
    EXPECT_EQ(apps().currentIndex().row(), 0);
    QTest::keyClick(&apps(), Qt::Key_Delete);
    QTest::keyClick(&apps(), Qt::Key_Delete);
    EXPECT_THAT(titles(apps()), ElementsAre("GVim"));
    press("Remove selected application");
    EXPECT_TRUE(desk->preferences.excludedApps().empty());
    EXPECT_FALSE(named<QPushButton>("Remove selected application").isEnabled());
}

TEST_F(ExclusionsTabTest, AnApplicationIsFoundByTypingAndAddedByReturn) {
    press("Add excluded application");
    auto& search = named<QLineEdit>("Search applications…");
    EXPECT_THAT(titles(named<CheckList>("Applications")),
                ElementsAre("org.example.Editor", "org.example.Mail"));
    QTest::keyClicks(&search, "example");
    QTest::keyClick(&search, Qt::Key_Down);
    QTest::keyClick(&search, Qt::Key_Return);
    EXPECT_EQ(desk->preferences.excludedApps().back().bundleID, "org.example.Mail");
    EXPECT_EQ(apps().currentIndex().row(), 3);
}

TEST_F(ExclusionsTabTest, AWebsiteIsTypedUntilItIsOne) {
    press("Add excluded website");
    desk->clock.advance(std::chrono::seconds(1)); // no page is open
    auto& field = *sheet().findChild<QLineEdit*>();
    for (const auto* text : {"", "not a domain", "https://www.github.com/x"}) {
        field.setText(QString::fromUtf8(text));
        QTest::keyClick(&field, Qt::Key_Return);
        EXPECT_TRUE(sheet().isVisible()) << text;
    }
    EXPECT_THAT(domains(), ElementsAre("github.com"));
    field.setText("http://www.example.com:80/");
    QTest::keyClick(&field, Qt::Key_Return);
    EXPECT_THAT(domains(), ElementsAre("github.com", "example.com"));
}

TEST_F(ExclusionsTabTest, AnOpenPageIsOfferedUnlessOneIsTypedAlready) {
    desk->pages.addresses = {"https://github.com/", "https://a.example/x", "https://a.example/y"};
    press("Add excluded website");
    desk->clock.advance(std::chrono::seconds(1));
    auto* choice = sheet().findChild<QComboBox*>();
    ASSERT_TRUE(choice->isVisible());
    EXPECT_EQ(choice->count(), 2) << "the other host and \"Other…\"";
    press("Add");
    EXPECT_THAT(domains(), ElementsAre("github.com", "a.example"));

    desk->preferences.setExcludedWebsites({});
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    press("Add excluded website");
    sheet().findChild<QLineEdit*>()->setText("typed.example");
    desk->clock.advance(std::chrono::seconds(1));
    press("Add");
    EXPECT_THAT(domains(), ElementsAre("typed.example"));
}

} // namespace
} // namespace glyma::qt
