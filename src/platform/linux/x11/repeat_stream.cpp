#include "platform/linux/x11/repeat_stream.h"

#include <cstring>

namespace glyma::x11 {

namespace {

constexpr std::size_t eventSize = 32;
constexpr std::uint8_t fromServer = 0; // XRecordFromServer
/// Milliseconds. No keyboard is set to repeat sooner; what looks like it is the same key on another keyboard,
/// as our own that types for the user.
constexpr xcb_timestamp_t shortestDelay = 30;

} // namespace

std::optional<RepeatStream> RepeatStream::open(const std::string& display) {
    xcb_record_range_t range{};
    range.device_events = {.first = XCB_KEY_PRESS, .last = XCB_KEY_RELEASE};
    auto stream = RecordStream::open(display, {&range, 1});
    return stream ? std::optional(RepeatStream(std::move(*stream))) : std::nullopt;
}

bool RepeatStream::drain(const std::function<void(xcb_keycode_t)>& repeated) {
    return stream_.drain([&](const RecordStream::Reply& reply, std::span<const std::uint8_t> data) {
        if (reply.category != fromServer)
            return;
        for (; data.size() >= eventSize; data = data.subspan(eventSize)) {
            xcb_key_press_event_t event;
            std::memcpy(&event, data.data(), sizeof event);
            handle(event, repeated);
        }
    });
}

void RepeatStream::handle(const xcb_key_press_event_t& event,
                          const std::function<void(xcb_keycode_t)>& repeated) {
    const bool isPress = event.response_type == XCB_KEY_PRESS;
    if (isPress && !down_.test(event.detail))
        pressedAt_.at(event.detail) = event.time;
    else if (isPress && event.time - pressedAt_.at(event.detail) >= shortestDelay)
        repeated(event.detail);
    down_.set(event.detail, isPress);
}

} // namespace glyma::x11
