#include "platform/linux/x11/activate_window.h"

#include "platform/linux/x11/connection.h"

namespace glyma::x11 {

void activateWindow(xcb_window_t window) {
    const auto connection = Connection::open({});
    if (!connection)
        return;
    // https://specifications.freedesktop.org/wm-spec: the source of the request is a pager, that is, the
    // user.
    constexpr std::uint32_t fromPager = 2;
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window;
    event.type = connection->atom("_NET_ACTIVE_WINDOW");
    event.data.data32[0] = fromPager;
    event.data.data32[1] = XCB_CURRENT_TIME;
    xcb_send_event(connection->get(), 0, connection->root(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char*>(&event));
    xcb_flush(connection->get());
}

} // namespace glyma::x11
