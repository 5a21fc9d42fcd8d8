#include "preferences/qt/page_bar.h"
#include "window_fixture.h"

#include <QScreen>
#include <QScrollArea>
#include <QStackedWidget>
#include <QVBoxLayout>
#include <nlohmann/json.hpp>

#include <map>

namespace glyma::qt {
namespace {

using nlohmann::json;

constexpr const char* selectedTabKey = "glymaSelectedPrefsTab";

/// A window of plain pages of given sizes, that tells which of them were made.
class PlainWindowTest : public WindowTest {
protected:
    PreferencesPage page(const std::string& id, int width, std::optional<int> height, int contentHeight) {
        return {.id = id,
                .title = QString::fromStdString(id),
                .width = width,
                .height = height,
                .make = [=, this] {
                    ++made[id];
                    auto* content = new QWidget;
                    auto* layout = new QVBoxLayout(content);
                    layout->setContentsMargins({});
                    auto* block = new QWidget;
                    block->setFixedHeight(contentHeight);
                    layout->addWidget(block);
                    return content;
                }};
    }

    void settle() { QTest::qWait(400); }

    std::map<std::string, int> made;
    PreferencesWindow window{{.settings = *desk->settings, .debug = desk->debug, .log = desk->log},
                             {page("small", 300, std::nullopt, 200), page("wide", 700, 550, 100),
                              page("tall", 560, std::nullopt, 2000)}};
};

TEST_F(PlainWindowTest, HasTheSizeOfItsPageAndStaysCentredWithItsTopInPlace) {
    window.show("small");
    settle();
    EXPECT_EQ(window.width(), 300);
    const auto before = window.geometry();
    window.show("wide");
    settle();
    EXPECT_EQ(window.width(), 700);
    EXPECT_EQ(window.height() - before.height(), 550 - 200);
    EXPECT_EQ(window.geometry().top(), before.top());
    EXPECT_NEAR(window.geometry().center().x(), before.center().x(), 1);
    window.show("small");
    settle();
    EXPECT_EQ(window.geometry(), before);
}

TEST_F(PlainWindowTest, APageThatNeedsMoreThanTheScreenScrolls) {
    window.show("tall");
    settle();
    EXPECT_LE(window.height(), window.screen()->availableGeometry().height());
    EXPECT_LE(window.height(), 800 + 100);
    const auto* area = qobject_cast<QScrollArea*>(window.findChild<QStackedWidget*>()->currentWidget());
    EXPECT_EQ(area->widget()->height(), 2000);
}

TEST_F(PlainWindowTest, MakesAPageOnceAndOnlyWhenItIsShown) {
    EXPECT_TRUE(made.empty());
    for (const char* id : {"wide", "small", "wide"})
        window.show(id);
    EXPECT_EQ(made, (std::map<std::string, int>{{"small", 1}, {"wide", 1}}));
}

class PreferencesWindowTest : public WindowTest {
protected:
    std::vector<QString> titles() const {
        const auto* bar = desk->window.findChild<PageBar*>();
        std::vector<QString> found;
        for (int index = 0; index < bar->count(); ++index)
            found.push_back(bar->tabText(index).remove(QLatin1Char('&')));
        return found;
    }
    bool hasDebugTab() const { return titles().back() == QStringLiteral("Debug"); }
};

TEST_F(PreferencesWindowTest, RemembersItsPageAcrossStarts) {
    open("advanced");
    restart();
    desk->window.show();
    EXPECT_EQ(desk->window.currentPage(), "advanced");
}

TEST_F(PreferencesWindowTest, OpensOnGeneralWhateverElseIsStored) {
    for (const json& stored : {json("debug"), json("no such page"), json(7), json::array(), json(nullptr)}) {
        desk = std::make_unique<gallery::PreferencesDesk>();
        desk->settings->set(selectedTabKey, stored);
        desk->window.show();
        EXPECT_EQ(desk->window.currentPage(), "general") << stored;
        EXPECT_EQ(desk->settings->value(selectedTabKey), json("general"));
    }
    desk->window.show("nonsense");
    EXPECT_EQ(desk->window.currentPage(), "general");
}

TEST_F(PreferencesWindowTest, TheDebugTabComesAndGoesWithItsSwitch) {
    open("advanced");
    EXPECT_FALSE(hasDebugTab());
    desk->debug.setShowDebugTab(true);
    EXPECT_TRUE(hasDebugTab());
    EXPECT_EQ(desk->window.currentPage(), "advanced");
    desk->window.show("debug");
    EXPECT_EQ(desk->window.currentPage(), "debug");
    desk->debug.setShowDebugTab(false);
    EXPECT_FALSE(hasDebugTab());
    EXPECT_EQ(desk->window.currentPage(), "advanced");
    EXPECT_EQ(desk->window.findChild<PageBar*>()->currentIndex(), int(titles().size()) - 1);
}

TEST_F(PreferencesWindowTest, IsDrivenByKeys) {
    open("general");
    auto& window = desk->window;
    const auto step = [&](Qt::Key key, Qt::KeyboardModifiers modifiers) {
        QTest::keyClick(&window, key, modifiers);
        return window.currentPage();
    };
    EXPECT_EQ(step(Qt::Key_Tab, Qt::ControlModifier), "exclusions");
    EXPECT_EQ(step(Qt::Key_PageDown, Qt::ControlModifier), "unicode");
    EXPECT_EQ(step(Qt::Key_Tab, Qt::ControlModifier | Qt::ShiftModifier), "exclusions");
    EXPECT_EQ(step(Qt::Key_PageUp, Qt::ControlModifier), "general");
    EXPECT_EQ(step(Qt::Key_PageUp, Qt::ControlModifier), "advanced") << "it goes round";
    EXPECT_EQ(step(Qt::Key_P, Qt::AltModifier), "permissions");
    for (const auto& [key, modifiers] : {std::pair(Qt::Key_Escape, Qt::KeyboardModifiers()),
                                         std::pair(Qt::Key_W, Qt::KeyboardModifiers(Qt::ControlModifier))}) {
        window.show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
        QTest::keyClick(&window, key, modifiers);
        EXPECT_FALSE(window.isVisible());
    }
}

TEST_F(PreferencesWindowTest, GrowsWhenAPageHasMoreToSay) {
    open("permissions");
    QTest::qWait(50);
    const int before = desk->window.height();
    desk->holdSecureInput(4711, {.exists = true, .name = "xterm"});
    QTest::qWait(400);
    EXPECT_GT(desk->window.height(), before + 80);
}

} // namespace
} // namespace glyma::qt
