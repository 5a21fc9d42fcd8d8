#include "platform/linux/x11/tray_colors.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstring>

namespace glyma::x11 {

std::optional<bool> isTrayDark(const Connection& connection) {
    // https://specifications.freedesktop.org/systemtray-spec: the owner of a selection, and its property of
    // twelve numbers of 16 bits, of which the first three are the red, green and blue of symbols.
    const auto selection = connection.atom(fmt::format("_NET_SYSTEM_TRAY_S{}", connection.screenNumber()));
    const auto owner = owned(xcb_get_selection_owner_reply(
        connection.get(), xcb_get_selection_owner(connection.get(), selection), nullptr));
    if (!owner || owner->owner == XCB_WINDOW_NONE)
        return std::nullopt;
    std::array<std::uint32_t, 3> foreground{};
    const auto cookie =
        xcb_get_property(connection.get(), 0, owner->owner, connection.atom("_NET_SYSTEM_TRAY_COLORS"),
                         XCB_ATOM_CARDINAL, 0, foreground.size());
    const auto reply = owned(xcb_get_property_reply(connection.get(), cookie, nullptr));
    if (!reply || reply->format != 32 || xcb_get_property_value_length(reply.get()) < int{sizeof foreground})
        return std::nullopt;
    std::memcpy(foreground.data(), xcb_get_property_value(reply.get()), sizeof foreground);
    constexpr std::uint32_t half = 0x8000;
    return std::ranges::max(foreground) >= half;
}

} // namespace glyma::x11
