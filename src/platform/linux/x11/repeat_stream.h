#pragma once

#include "platform/linux/x11/record_stream.h"

#include <array>
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

    int descriptor() const { return stream_.descriptor(); }
    /// \return whether anything came.
    bool drain(const std::function<void(xcb_keycode_t)>& repeated);

private:
    explicit RepeatStream(RecordStream stream)
        : stream_(std::move(stream)) {}
    void handle(const xcb_key_press_event_t& event, const std::function<void(xcb_keycode_t)>& repeated);

    RecordStream stream_;
    std::bitset<256> down_;
    std::array<xcb_timestamp_t, 256> pressedAt_{};
};

} // namespace glyma::x11
