#include "../picker/window/virtual_display.h"
#include "charinfo/qt/character_info_panel.h"

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QPushButton>
#include <gtest/gtest.h>

namespace glyma::qt {
namespace {

bool eventually(const std::function<bool()>& condition) {
    QElapsedTimer timer;
    for (timer.start(); !condition() && timer.elapsed() < 3000;)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    return condition();
}

/// The real window on a virtual display without a window manager, which would mend the focus by itself.
class CharacterInfoPanelTest : public testing::Test {
protected:
    static VirtualDisplay& display() { return VirtualDisplay::shared(); }

    void show(std::size_t count) {
        std::vector<CharacterInfo> infos(count);
        for (auto& info : infos) {
            info.character = info.name = "a";
            info.scalars = {{U'a', "U+0061", "LATIN SMALL LETTER A"}};
        }
        panel.show(infos, {100, 100, 620, 560});
        ASSERT_TRUE(eventually([&] { return display().isShown(window()); }));
    }
    unsigned window() const { return static_cast<unsigned>(panel.winId()); }

    VirtualDisplay& display_ = display();
    Appearance appearance;
    CompositorWatch compositor;
    int closings = 0;
    CharacterInfoPanel panel{appearance, compositor, {}, [this] { ++closings; }};
};

TEST_F(CharacterInfoPanelTest, BorrowsTheKeyboardOnlyWhenItIsGivenIt) {
    display().focusNewWindow();
    show(3);
    EXPECT_EQ(display().geometry(window()), (Rect{100, 100, 620, 560}));
    EXPECT_TRUE(display().hasFocus());
    EXPECT_FALSE(panel.hasKeyboard());
    panel.takeKeyboard();
    ASSERT_TRUE(eventually([&] { return panel.hasKeyboard(); }));
    EXPECT_FALSE(display().hasFocus());
    panel.hide();
    EXPECT_TRUE(display().hasFocus());
    // Qt believes for a moment that another of its windows is about to get the focus.
    ASSERT_TRUE(eventually([] { return !QGuiApplication::focusWindow(); }));

    show(1);
    display().click({400, 120});
    ASSERT_TRUE(eventually([&] { return panel.hasKeyboard(); }));
    display().focusNewWindow(); // the user has gone on elsewhere
    panel.hide();
    EXPECT_TRUE(display().hasFocus());
}

TEST_F(CharacterInfoPanelTest, HasACardForEachAndAWayToCloseIt) {
    show(shownCharacters);
    const auto buttons = [&](const QString& text) {
        int count = 0;
        for (const auto* button : panel.findChildren<QPushButton*>())
            count += button->text() == text;
        return count;
    };
    EXPECT_EQ(buttons(QStringLiteral("Copy")), 24);
    show(2);
    EXPECT_EQ(buttons(QStringLiteral("Copy")), 2);
    display().click({100 + 620 - 19, 119});
    EXPECT_TRUE(eventually([&] { return closings == 1; }));
    panel.hide();
}

} // namespace
} // namespace glyma::qt
