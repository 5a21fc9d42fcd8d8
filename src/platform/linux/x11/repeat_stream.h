#pragma once

#include "platform/linux/x11/connection.h"

#include <bitset>
#include <functional>
#include <optional>

namespace glyma::x11 {

/// The repeats of held keys, exactly as many as the application gets: the server makes them itself and sends
/// no raw events for them, but records them. Tap thread.
class RepeatStream {
public:
    /// Absent when the server has no RECORD extension: held keys then count once.
    static std::optional<RepeatStream> open(const std::string& display);

    int descriptor() const { return connection_.descriptor(); }
    /// \return whether anything came.
    bool drain(const std::function<void(xcb_keycode_t)>& repeated);

private:
    RepeatStream(Connection connection, unsigned sequence)
        : connection_(std::move(connection))
        , sequence_(sequence) {}
    void handle(const xcb_key_press_event_t& event, const std::function<void(xcb_keycode_t)>& repeated);

    Connection connection_;
    unsigned sequence_;
    std::bitset<256> down_;
};

} // namespace glyma::x11
