#include "platform/linux/x11/selection_owner.h"

namespace glyma::x11 {

namespace {

/// What the identifiers of all windows that one connection made have in common.
std::uint32_t clientOf(const Connection& connection, xcb_window_t window) {
    return window & ~xcb_get_setup(connection.get())->resource_id_mask;
}

} // namespace

SelectionOwner::SelectionOwner(std::string selection, const std::string& display)
    : selection_(std::move(selection)) {
    if (auto connection = Connection::open(display))
        server_ = std::make_unique<Server>(*std::move(connection));
}

bool SelectionOwner::isInFront() const {
    if (!server_)
        return false;
    const auto& [connection, windows] = *server_;
    const auto cookie = xcb_get_selection_owner(connection.get(), connection.atom(selection_));
    const auto reply = owned(xcb_get_selection_owner_reply(connection.get(), cookie, nullptr));
    const auto active = windows.activeWindow();
    if (!reply || reply->owner == XCB_WINDOW_NONE || active == XCB_WINDOW_NONE)
        return false;
    if (clientOf(connection, reply->owner) == clientOf(connection, active))
        return true;
    // A process may have more than one connection. (The numbers of one in a container differ from ours.)
    const auto process = windows.process(reply->owner);
    return process != 0 && process == windows.process(active);
}

} // namespace glyma::x11
