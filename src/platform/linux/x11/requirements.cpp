#include "platform/linux/x11/requirements.h"

#include "platform/linux/x11/xkb_protocol.h"

#include <fmt/format.h>
#include <xcb/xinput.h>
#include <xcb/xtest.h>

namespace glyma::x11 {

Version negotiateXInput(const Connection& connection) {
    if (!connection.extension(xcb_input_id))
        return {};
    const auto cookie = xcb_input_xi_query_version(connection.get(), neededXInput.major, neededXInput.minor);
    const auto reply = owned(xcb_input_xi_query_version_reply(connection.get(), cookie, nullptr));
    return reply ? Version{reply->major_version, reply->minor_version} : Version{};
}

bool hasXTest(const Connection& connection) {
    return connection.extension(xcb_test_id) != nullptr;
}

bool negotiateXkb(const Connection& connection) {
    if (!connection.extension(xcb_xkb_id))
        return false;
    const auto cookie = xcb_xkb_use_extension(connection.get(), XCB_XKB_MAJOR_VERSION, XCB_XKB_MINOR_VERSION);
    const auto reply = owned(xcb_xkb_use_extension_reply(connection.get(), cookie, nullptr));
    return reply && reply->supported;
}

std::expected<void, std::string> checkRequirements(const Connection& connection) {
    if (const auto version = negotiateXInput(connection); version < neededXInput)
        return std::unexpected(fmt::format(
            "Glyma cannot hear keys: the X server {}, and XInput {}.{} is needed. Use an X server of 2012 or "
            "later "
            "with its XInputExtension switched on.",
            version == Version{} ? "has no XInput extension"
                                 : fmt::format("speaks XInput {}.{}", version.major, version.minor),
            neededXInput.major, neededXInput.minor));
    if (!hasXTest(connection))
        return std::unexpected(
            "Glyma cannot type: the X server has no XTEST extension. Start the X server without "
            "\"-extension XTEST\".");
    if (!negotiateXkb(connection))
        return std::unexpected(
            "Glyma cannot read the keyboard layout: the X server has no XKEYBOARD extension. "
            "Start the X server without \"-extension XKEYBOARD\".");
    return {};
}

} // namespace glyma::x11
