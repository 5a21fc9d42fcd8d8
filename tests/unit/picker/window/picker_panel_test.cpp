#include "desk.h"
#include "picker/qt/picker_layout.h"
#include "virtual_display.h"

#include <QAccessible>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace glyma::gallery {
namespace {

constexpr Rect highCaret{200, 100, 2, 20};
/// One row fits below it, seven do not.
constexpr Rect lowCaret{200, 640, 2, 20};

bool eventually(const std::function<bool()>& condition) {
    for (int attempt = 0; attempt < 200; ++attempt) {
        if (condition())
            return true;
        wait(10);
    }
    return false;
}

/// The real window over the whole catalogue, on a virtual display with no window manager and no compositor.
class PickerPanelTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        display();
        desk = std::move(Desk::make().value());
    }
    static void TearDownTestSuite() { desk.reset(); }

    void SetUp() override {
        display().movePointer(5, 790);
        display().focusNewWindow();
    }
    void TearDown() override {
        desk->panel.hide();
        desk->preferences.setSkinToneModifier(std::nullopt);
        display().endCompositor();
        wait(20);
        EXPECT_TRUE(display().hasFocus()) << "the picker took the focus";
    }

    void open(const std::string& query, const Rect& caret) {
        desk->open(query, caret);
        ASSERT_TRUE(eventually([] { return display().isShown(window()); }));
    }
    static unsigned window() { return static_cast<unsigned>(desk->panel.view().winId()); }
    static Rect frame() { return desk->panel.frame(); }
    static Rect shown() { return display().geometry(window()); }
    static Point middleOfRow(std::size_t index) {
        const auto row = desk->panel.view().list().row(index).center();
        return {frame().x + row.x(), frame().y + row.y()};
    }
    static std::string identityAt(std::size_t index) { return identity(desk->model.items()[index]); }

    static VirtualDisplay& display() { return VirtualDisplay::shared(); }
    static inline std::unique_ptr<Desk> desk;
};

TEST_F(PickerPanelTest, IsTheFrameItSaysWithCutCorners) {
    open("smil", highCaret);
    EXPECT_EQ(frame(), (Rect{200, 124, 320, 389}));
    EXPECT_TRUE(eventually([] { return shown() == frame(); }));
    EXPECT_TRUE(display().isOverrideRedirect(window()));
    const auto region = display().visibleRegion(window());
    EXPECT_FALSE(region.contains(QPoint(0, 0)));
    EXPECT_FALSE(region.contains(QPoint(319, 388)));
    EXPECT_TRUE(region.contains(QPoint(0, 200)));
    EXPECT_TRUE(region.contains(QPoint(16, 0)));
}

TEST_F(PickerPanelTest, FollowsTheNumberOfResultsWithoutLeavingTheCaret) {
    open("smil", lowCaret);
    const auto attached = lowCaret.y - 4;
    EXPECT_EQ(frame().bottom(), attached);
    for (const auto* query : {"smilq", "smil", "smiling face with horns", "s"}) {
        desk->model.setQuery(query);
        EXPECT_EQ(frame().bottom(), attached) << query;
        EXPECT_TRUE(eventually([] { return shown() == frame(); })) << query;
    }
    // A picker that opens with one row has room below.
    desk->panel.hide();
    open("smilq", lowCaret);
    EXPECT_GT(frame().y, lowCaret.y);
}

TEST_F(PickerPanelTest, MovesWithTheTargetsWindowAndStaysAttached) {
    open("smil", lowCaret);
    const Point atShow{frame().x, frame().y};
    desk->model.setQuery("smilq");
    desk->panel.setFrameOrigin({atShow.x + 30, atShow.y - 50});
    EXPECT_EQ(frame(), (Rect{230, 640 - 50 - 4 - 101, 320, 101}));
    desk->model.setQuery("smil");
    EXPECT_EQ(frame(), (Rect{230, 640 - 50 - 4 - 389, 320, 389}));
}

TEST_F(PickerPanelTest, FirstClickHighlightsSecondChooses) {
    std::vector<std::string> chosen;
    open("smil", highCaret);
    desk->model.setOnSelection([&](const PickerItem& item) {
        desk->panel.hide(); // empties the list that the item came from
        chosen.push_back(identity(item));
    });
    const auto wanted = identityAt(3);
    display().click(middleOfRow(3));
    EXPECT_TRUE(eventually([] { return desk->model.selectedIndex() == 3; }));
    EXPECT_TRUE(chosen.empty());
    display().click(middleOfRow(3));
    EXPECT_TRUE(eventually([&] { return !chosen.empty(); }));
    EXPECT_EQ(chosen, std::vector<std::string>{wanted});
}

TEST_F(PickerPanelTest, ScrollsToTheSelectionAndWithTheWheel) {
    open("smil", highCaret);
    for (int step = 0; step < 10; ++step)
        desk->model.moveSelection(1);
    EXPECT_FALSE(desk->model.needsScrollToSelection());
    EXPECT_EQ(desk->panel.view().list().offset, 4 * 48);
    display().scroll(middleOfRow(6), 2);
    EXPECT_TRUE(eventually([] { return desk->panel.view().list().offset == 6 * 48; }));
    EXPECT_EQ(desk->model.selectedIndex(), 10);
    desk->model.setQuery("smi");
    EXPECT_EQ(desk->panel.view().list().offset, 0);
}

TEST_F(PickerPanelTest, HidesAndForgets) {
    open("smil", highCaret);
    bool isChosen = false;
    desk->model.setOnSelection([&](const PickerItem&) { isChosen = true; });
    desk->panel.hide();
    EXPECT_TRUE(eventually([] { return !display().isShown(window()); }));
    EXPECT_TRUE(desk->model.items().empty());
    desk->model.setQuery("smil");
    desk->model.confirmSelection();
    EXPECT_FALSE(isChosen);
    EXPECT_FALSE(display().isShown(window()));
}

TEST_F(PickerPanelTest, AnInterruptedWarmUpDoesNotHideThePicker) {
    desk->panel.warmUp();
    open("smil", highCaret);
    wait(150);
    EXPECT_TRUE(display().isShown(window()));
    EXPECT_EQ(shown(), frame());
}

TEST_F(PickerPanelTest, FollowsTheCompositor) {
    open("smil", highCaret);
    display().startCompositor();
    EXPECT_TRUE(eventually([] { return shown().x == frame().x - qt::Shadow::margin; }));
    // The shadow is no obstacle to clicks into the application.
    const auto input = display().inputRegion(window());
    EXPECT_FALSE(input.contains(QPoint(20, 200)));
    EXPECT_TRUE(input.contains(QPoint(qt::Shadow::margin + 20, 200)));
    // While it runs, a shorter list is one paint: the window itself stays.
    const auto before = shown();
    desk->model.setQuery("smilq");
    wait(50);
    EXPECT_EQ(shown(), before);
    display().endCompositor();
    EXPECT_TRUE(eventually([] { return shown() == frame(); }));
}

TEST_F(PickerPanelTest, TellsAssistiveTechnologyWhatItShows) {
    open("smiling face with horns", highCaret);
    auto* list = QAccessible::queryAccessibleInterface(&desk->panel.view());
    ASSERT_TRUE(list);
    EXPECT_EQ(list->role(), QAccessible::List);
    ASSERT_EQ(list->childCount(), static_cast<int>(desk->model.items().size()));
    auto* row = list->child(0);
    EXPECT_EQ(row->role(), QAccessible::ListItem);
    EXPECT_EQ(row->text(QAccessible::Name), QStringLiteral("😈 smiling face with horns"));
    EXPECT_TRUE(row->state().selected);
    EXPECT_FALSE(row->state().focusable);
    EXPECT_EQ(list->indexOfChild(row), 0);
    desk->model.setQuery("smilq");
    EXPECT_FALSE(row->isValid());
}

TEST_F(PickerPanelTest, SkinToneMenuStoresTheTone) {
    open("hand", highCaret);
    const auto button = desk->panel.view().skinToneButton().center();
    auto& menu = desk->panel.skinToneMenu();
    const int before = desk->recached;
    display().click({double(button.x()), double(button.y())});
    ASSERT_TRUE(eventually([&] { return menu.isVisible(); }));
    const auto dark = menu.geometry().bottomLeft() + QPoint(40, -16);
    display().click({double(dark.x()), double(dark.y())});
    EXPECT_TRUE(eventually([] { return desk->preferences.skinToneModifier() == "\U0001F3FF"; }));
    EXPECT_FALSE(menu.isVisible());
    EXPECT_EQ(desk->recached, before + 1);
    EXPECT_EQ(desk->panel.view().rowContentAt(0).icon.find("\U0001F3FF") != std::string::npos, true);
}

TEST_F(PickerPanelTest, SkinToneMenuClosesWithoutAChoice) {
    open("hand", highCaret);
    const auto button = desk->panel.view().skinToneButton().center();
    auto& menu = desk->panel.skinToneMenu();
    const int before = desk->recached;
    display().click({double(button.x()), double(button.y())});
    ASSERT_TRUE(eventually([&] { return menu.isVisible(); }));
    display().click({700, 600}); // beside it
    EXPECT_TRUE(eventually([&] { return !menu.isVisible(); }));
    EXPECT_TRUE(desk->panel.isVisible());
    EXPECT_EQ(desk->recached, before + 1);
    display().click({double(button.x()), double(button.y())});
    ASSERT_TRUE(eventually([&] { return menu.isVisible(); }));
    desk->panel.hide();
    EXPECT_FALSE(menu.isVisible());
    EXPECT_EQ(desk->preferences.skinToneModifier(), std::nullopt);
}

} // namespace
} // namespace glyma::gallery
