#include "app/desktop/status_icon.h"
#include "app/desktop/status_menu.h"
#include "preferences/user_preferences.h"

#include <QApplication>
#include <gmock/gmock.h>

#include <set>

namespace glyma {
namespace {

using testing::ElementsAre;

class TrayTest : public testing::Test {
protected:
    static void SetUpTestSuite() {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        static int argc = 1;
        static char name[] = "tray_test";
        static char* argv[] = {name, nullptr};
        static QApplication application(argc, argv);
    }
};

double coverage(const QImage& image) {
    double sum = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            sum += image.pixelColor(x, y).alphaF();
    return sum / (image.width() * image.height());
}

TEST_F(TrayTest, TheMostUrgentStateIsShown) {
    Status status{.isImporting = true,
                  .permissionsNeeded = true,
                  .secureInputBlocked = true,
                  .menuBarIcon = "sparkles",
                  .triggerCharacter = "+"};
    EXPECT_EQ(statusSymbol(status), "arrow.trianglehead.2.clockwise.rotate.90");
    status.isImporting = false;
    EXPECT_EQ(statusSymbol(status), "exclamationmark.triangle");
    status.permissionsNeeded = false;
    EXPECT_EQ(statusSymbol(status), "lock.trianglebadge.exclamationmark");
    status.secureInputBlocked = false;
    EXPECT_EQ(statusSymbol(status), "sparkles");
    for (const auto* trigger : {"trigger", "", "no such icon"}) {
        status.menuBarIcon = trigger;
        EXPECT_EQ(statusSymbol(status), "") << trigger;
    }
}

TEST_F(TrayTest, EverySymbolIsDrawnAndDiffersFromTheOthers) {
    std::vector<Status> states{
        {.isImporting = true}, {.permissionsNeeded = true}, {.secureInputBlocked = true}};
    for (const auto& option : UserPreferences::menuBarIconOptions())
        states.push_back({.menuBarIcon = std::string(option.value)});
    states.push_back({.triggerCharacter = "+"});
    std::vector<QImage> seen;
    for (const auto& state : states)
        for (const int size : {16, 22, 64}) {
            const auto image = statusStencil(state, size);
            EXPECT_EQ(image.size(), QSize(size, size));
            EXPECT_GT(coverage(image), 0.1) << statusSymbol(state);
            EXPECT_LT(coverage(image), 0.95) << statusSymbol(state);
            EXPECT_THAT(seen, testing::Not(testing::Contains(image))) << statusSymbol(state);
            seen.push_back(image);
        }
}

TEST_F(TrayTest, TheTriggerIsCutOutOfTheSquare) {
    const auto image = statusStencil({.triggerCharacter = "+"}, 72);
    EXPECT_EQ(image.pixelColor(8, 36).alpha(), 255);
    EXPECT_EQ(image.pixelColor(0, 0).alpha(), 0);
    EXPECT_LT(coverage(image), coverage(statusStencil({.triggerCharacter = " "}, 72)) - 0.02);
    EXPECT_NE(statusStencil({.isImporting = true}, 32, 0.25), statusStencil({.isImporting = true}, 32));
}

TEST_F(TrayTest, TheIconShowsOnItsPanel) {
    const auto brightness = [](bool isPanelDark) {
        const auto image = statusIcon({}, isPanelDark).pixmap(64).toImage();
        return image.pixelColor(8, 32).lightness();
    };
    EXPECT_GT(brightness(true), 200);
    EXPECT_LT(brightness(false), 80);
}

std::vector<std::string> lines(const StatusMenu& menu) {
    std::vector<std::string> texts;
    for (const auto* action : menu.actions())
        if (action->isVisible())
            texts.push_back(action->isSeparator() ? "-" : action->text().toStdString());
    return texts;
}

TEST_F(TrayTest, TheMenuHasTheLinesThatAreCalledFor) {
    std::vector<std::string> done;
    StatusMenu menu({.openPreferences = [&](const std::string& tab) { done.push_back(tab); },
                     .openUpdatePage = [&] { done.push_back("update page"); },
                     .quit = [&] { done.push_back("end"); }});
    EXPECT_THAT(lines(menu), ElementsAre("Preferences…", "Check for Updates…", "-", "Quit Glyma"));
    menu.setLines(false, true, true);
    EXPECT_THAT(lines(menu),
                ElementsAre("⚠️ Adjust Permissions", "-", "🔒 Secure Input is blocking Glyma…", "-",
                            "Preferences…", "Check for Updates…", "-", "Quit Glyma"));
    menu.setLines(true, false, false);
    EXPECT_THAT(lines(menu), ElementsAre("Importing Library…", "-", "Preferences…", "Check for Updates…", "-",
                                         "Quit Glyma"));
    for (auto* action : menu.actions())
        action->trigger();
    EXPECT_THAT(done, ElementsAre("unicode", "permissions", "permissions", "general", "update page", "end"));
}

} // namespace
} // namespace glyma
