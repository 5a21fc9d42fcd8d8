#include "platform/linux/x11/repeat_stream.h"

#include <xcb/record.h>
#include <xcb/xcbext.h>

#include <cstring>

namespace glyma::x11 {

namespace {

constexpr int eventSize = 32;
constexpr std::uint8_t fromServer = 0; // XRecordFromServer

} // namespace

std::optional<RepeatStream> RepeatStream::open(const std::string& display) {
    auto connection = Connection::open(display);
    if (!connection || !connection->extension(xcb_record_id))
        return std::nullopt;
    const auto context = xcb_generate_id(connection->get());
    xcb_record_range_t range{};
    range.device_events = {.first = XCB_KEY_PRESS, .last = XCB_KEY_RELEASE};
    const xcb_record_client_spec_t clients = XCB_RECORD_CS_ALL_CLIENTS;
    xcb_record_create_context(connection->get(), context, 0, 1, 1, &clients, &range);
    const auto cookie = xcb_record_enable_context(connection->get(), context);
    connection->flush();
    return RepeatStream(std::move(*connection), cookie.sequence);
}

bool RepeatStream::drain(const std::function<void(xcb_keycode_t)>& repeated) {
    bool isAnything = false;
    void* raw = nullptr;
    xcb_generic_error_t* error = nullptr;
    // The request is answered by one reply after another for as long as the context is enabled.
    while (xcb_poll_for_reply(connection_.get(), sequence_, &raw, &error) && raw) {
        isAnything = true;
        const auto reply = owned(static_cast<xcb_record_enable_context_reply_t*>(raw));
        if (reply->category != fromServer)
            continue;
        const auto* const data = xcb_record_enable_context_data(reply.get());
        const int length = xcb_record_enable_context_data_length(reply.get());
        for (int offset = 0; offset + eventSize <= length; offset += eventSize) {
            xcb_key_press_event_t event;
            std::memcpy(&event, data + offset, sizeof event);
            handle(event, repeated);
        }
    }
    owned(error);
    return isAnything;
}

void RepeatStream::handle(const xcb_key_press_event_t& event,
                          const std::function<void(xcb_keycode_t)>& repeated) {
    const bool isPress = event.response_type == XCB_KEY_PRESS;
    if (isPress && down_.test(event.detail))
        repeated(event.detail);
    down_.set(event.detail, isPress);
}

} // namespace glyma::x11
