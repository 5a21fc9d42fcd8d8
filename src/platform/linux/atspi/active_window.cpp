#include "platform/linux/atspi/active_window.h"

#include <xcb/xcb.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <vector>

namespace glyma::atspi {

namespace {

struct ReplyRelease {
    void operator()(void* reply) const { std::free(reply); }
};
template<typename T>
using Reply = std::unique_ptr<T, ReplyRelease>;

} // namespace

struct ActiveWindow::Connection {
    xcb_connection_t* xcb = xcb_connect(nullptr, nullptr);
    xcb_window_t root = XCB_NONE;
    xcb_atom_t activeWindow = atom("_NET_ACTIVE_WINDOW");
    xcb_atom_t process = atom("_NET_WM_PID");
    xcb_atom_t frameExtents = atom("_GTK_FRAME_EXTENTS");

    Connection() {
        if (!xcb_connection_has_error(xcb))
            root = xcb_setup_roots_iterator(xcb_get_setup(xcb)).data->root;
    }
    ~Connection() { xcb_disconnect(xcb); }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    xcb_atom_t atom(std::string_view name) {
        const auto cookie = xcb_intern_atom(xcb, 0, static_cast<std::uint16_t>(name.size()), name.data());
        const Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(xcb, cookie, nullptr));
        return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
    }

    xcb_get_property_cookie_t request(xcb_window_t window, xcb_atom_t property) {
        return xcb_get_property(xcb, 0, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, 4);
    }

    std::vector<std::uint32_t> numbers(xcb_get_property_cookie_t cookie) {
        const Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(xcb, cookie, nullptr));
        if (!reply || reply->format != 32)
            return {};
        const auto* begin = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
        return {begin, begin + xcb_get_property_value_length(reply.get()) / 4};
    }
};

ActiveWindow::ActiveWindow()
    : connection_(std::make_unique<Connection>()) {}

ActiveWindow::~ActiveWindow() = default;

std::optional<ActiveWindow::State> ActiveWindow::read() {
    auto& connection = *connection_;
    if (connection.root == XCB_NONE)
        return std::nullopt;
    const auto active = connection.numbers(connection.request(connection.root, connection.activeWindow));
    if (active.empty() || active.front() == XCB_NONE)
        return std::nullopt;
    const auto window = active.front();

    const auto processCookie = connection.request(window, connection.process);
    const auto extentsCookie = connection.request(window, connection.frameExtents);
    const auto geometryCookie = xcb_get_geometry(connection.xcb, window);
    const auto originCookie = xcb_translate_coordinates(connection.xcb, window, connection.root, 0, 0);
    const auto process = connection.numbers(processCookie);
    const auto extents = connection.numbers(extentsCookie);
    const Reply<xcb_get_geometry_reply_t> geometry(
        xcb_get_geometry_reply(connection.xcb, geometryCookie, nullptr));
    const Reply<xcb_translate_coordinates_reply_t> origin(
        xcb_translate_coordinates_reply(connection.xcb, originCookie, nullptr));
    if (!geometry || !origin)
        return std::nullopt;

    State state;
    state.process = process.empty() ? 0 : static_cast<pid_t>(process.front());
    state.frame = {static_cast<double>(origin->dst_x), static_cast<double>(origin->dst_y),
                   static_cast<double>(geometry->width), static_cast<double>(geometry->height)};
    if (extents.size() == 4) { // left, right, top, bottom
        state.frame.x += extents[0];
        state.frame.y += extents[2];
        state.frame.width -= extents[0] + extents[1];
        state.frame.height -= extents[2] + extents[3];
    }
    return state;
}

} // namespace glyma::atspi
