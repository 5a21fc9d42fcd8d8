#pragma once

#include <xcb/damage.h>
#include <xcb/xcb.h>

#include <chrono>
#include <cstdint>
#include <optional>

namespace glyma::bench {

using Clock = std::chrono::steady_clock;

/// The measuring side: types keys into a window of its own and sees when something large has been painted.
class XClient {
public:
    /// Ends the program with a message when the display lacks XTEST or XDamage.
    XClient();
    ~XClient();
    XClient(const XClient&) = delete;
    XClient& operator=(const XClient&) = delete;

    /// Shows an empty window and waits until it has the focus.
    void openTarget();
    void press(std::uint8_t keycode);
    void release(std::uint8_t keycode);
    void tap(std::uint8_t keycode);
    /// Time from now until the last paint of the burst that the next large paint begins; none within a
    /// second.
    std::optional<std::chrono::microseconds> timeToPainted(Clock::time_point start);
    /// Waits until nothing has been painted for a while.
    void settle();
    /// Whether a window at least as large as a picker is shown besides the target.
    bool isPickerShown();

private:
    /// The next large paint, if it comes in time.
    std::optional<Clock::time_point> nextPaint(Clock::time_point deadline);
    bool waitForEvent(Clock::time_point deadline);
    void fakeKey(std::uint8_t type, std::uint8_t keycode);

    xcb_connection_t* connection_;
    xcb_window_t root_;
    xcb_window_t target_ = 0;
    std::uint8_t damageEvent_ = 0;
};

} // namespace glyma::bench
