#include "main_queue.h"
#include "platform/linux/x11/mouse_monitor.h"
#include "x11_fixture.h"

#include <xcb/xtest.h>

#include <thread>

namespace glyma::x11::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class MouseMonitorTest : public ::testing::Test {
protected:
    void fake(std::uint8_t type, std::uint8_t detail, std::int16_t x = 0, std::int16_t y = 0) {
        xcb_test_fake_input(hand.get(), type, detail, 0, hand.root(), x, y, 0);
        hand.focus(); // a round trip: the server has done it
    }
    void move(std::int16_t x, std::int16_t y) { fake(XCB_MOTION_NOTIFY, 0, x, y); }
    void press(std::uint8_t button) { fake(XCB_BUTTON_PRESS, button); }
    void release(std::uint8_t button) { fake(XCB_BUTTON_RELEASE, button); }
    void click(std::uint8_t button) {
        press(button);
        release(button);
    }
    /// Lets the monitor see where the pointer is: fingers are never faster.
    static void settle() { std::this_thread::sleep_for(std::chrono::milliseconds(50)); }
    Subscription observe() {
        return monitor.observe([this](MouseEvent event) { seen.push_back(event); });
    }
    bool sees(const std::vector<MouseEvent>& expected) {
        return eventually([&] {
            queue.run();
            return seen == expected;
        });
    }

    Server server;
    Connection hand = std::move(Connection::open(server.display()).value());
    MainQueue queue;
    MouseMonitor monitor{queue, server.display()};
    std::vector<MouseEvent> seen;
};

TEST_F(MouseMonitorTest, TellsButtonsAndDragsWhileSomebodyObserves) {
    move(300, 300);
    click(1);
    auto subscription = observe();
    EXPECT_TRUE(sees({})) << "what was before is not told";
    move(310, 310);
    click(4); // the wheel
    click(3);
    EXPECT_TRUE(sees({MouseEvent::otherDown}));
    seen.clear();
    press(1);
    ASSERT_TRUE(sees({MouseEvent::leftDown}));
    settle(); // motion is selected only now
    move(320, 310);
    move(330, 310);
    release(1);
    move(340, 310);
    EXPECT_TRUE(
        sees({MouseEvent::leftDown, MouseEvent::leftDragged, MouseEvent::leftDragged, MouseEvent::leftUp}));
    seen.clear();
    subscription.reset();
    click(1);
    settle();
    queue.run();
    EXPECT_THAT(seen, IsEmpty());
}

TEST_F(MouseMonitorTest, KeepsClicksIntoOurOwnWindowsToItself) {
    const Target own(server.display()); // of this process, as the picker and its menu are
    const auto geometry =
        owned(xcb_get_geometry_reply(hand.get(), xcb_get_geometry(hand.get(), own.window()), nullptr));
    ASSERT_TRUE(geometry);
    const auto subscription = observe();
    move(static_cast<std::int16_t>(geometry->x + 2), static_cast<std::int16_t>(geometry->y + 2));
    press(1);
    settle();
    move(static_cast<std::int16_t>(geometry->x + geometry->width + 50), geometry->y);
    release(1);
    click(3);
    EXPECT_TRUE(sees({MouseEvent::otherDown})) << "the last one, beside the window";
    EXPECT_THAT(seen, ElementsAre(MouseEvent::otherDown));
}

} // namespace
} // namespace glyma::x11::testing
