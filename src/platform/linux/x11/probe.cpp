#include "platform/linux/x11/probe.h"

#include "platform/linux/x11/window_reader.h"

#include <fmt/format.h>
#include <xcb/record.h>

namespace glyma::x11 {

namespace {

bool isOwned(const Connection& connection, const std::string& selection) {
    const auto cookie = xcb_get_selection_owner(connection.get(), connection.atom(selection));
    const auto reply = owned(xcb_get_selection_owner_reply(connection.get(), cookie, nullptr));
    return reply && reply->owner != XCB_WINDOW_NONE;
}

bool hasExtensionNamed(const Connection& connection, const std::string& name) {
    const auto cookie =
        xcb_query_extension(connection.get(), static_cast<std::uint16_t>(name.size()), name.c_str());
    const auto reply = owned(xcb_query_extension_reply(connection.get(), cookie, nullptr));
    return reply && reply->present;
}

void addRemarks(Probe& probe) {
    if (!probe.hasRecord)
        probe.remarks.push_back(
            "The X server has no RECORD extension: a key held down counts once, so that text "
            "deleted by holding BackSpace is not followed.");
    if (!probe.hasCompositor)
        probe.remarks.push_back("No compositor runs: the picker is drawn without transparency and shadow.");
    if (probe.windowManager.empty())
        probe.remarks.push_back(
            "No window manager says that it runs: the application in front is taken from the "
            "keyboard focus.");
    if (probe.isXwayland)
        probe.remarks.push_back(
            "This is a Wayland session: Glyma hears keys in X11 applications only. Choose an "
            "X11 (Xorg) session when logging in.");
}

} // namespace

Probe unreachable(const std::string& display) {
    Probe probe;
    const char* const fromEnvironment = std::getenv("DISPLAY");
    probe.display = !display.empty() ? display : fromEnvironment ? fromEnvironment : "";
    return probe;
}

Probe probe(const Connection& connection, const std::string& display) {
    auto probe = unreachable(display);
    probe.isReachable = true;
    probe.xinput = negotiateXInput(connection);
    probe.hasXTest = hasXTest(connection);
    probe.hasXkb = negotiateXkb(connection);
    probe.hasRecord = connection.extension(xcb_record_id) != nullptr;
    probe.hasCompositor = isOwned(connection, fmt::format("_NET_WM_CM_S{}", connection.screenNumber()));
    probe.isXwayland = hasExtensionNamed(connection, "XWAYLAND");
    probe.windowManager = WindowReader(connection).windowManagerName();
    if (auto complete = checkRequirements(connection); !complete)
        probe.problems.push_back(complete.error());
    addRemarks(probe);
    return probe;
}

Probe probe(const std::string& display) {
    const auto connection = Connection::open(display);
    if (connection)
        return probe(*connection, display);
    auto nothing = unreachable(display);
    nothing.problems.push_back(connection.error());
    return nothing;
}

} // namespace glyma::x11
