#include "platform/linux/x11/window_reader.h"

#include "platform/linux/x11/client_process.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <unistd.h>

namespace glyma::x11 {

WindowReader::WindowReader(const Connection& connection)
    : connection_(connection)
    , activeWindowAtom_(connection.atom("_NET_ACTIVE_WINDOW"))
    , processAtom_(connection.atom("_NET_WM_PID"))
    , gtkApplicationAtom_(connection.atom("_GTK_APPLICATION_ID"))
    , kdeDesktopFileAtom_(connection.atom("_KDE_NET_WM_DESKTOP_FILE")) {}

std::string WindowReader::text(xcb_window_t window, xcb_atom_t property) const {
    constexpr std::uint32_t words = 256;
    const auto cookie =
        xcb_get_property(connection_.get(), 0, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, words);
    const auto reply = owned(xcb_get_property_reply(connection_.get(), cookie, nullptr));
    if (!reply || reply->format != 8)
        return {};
    return {static_cast<const char*>(xcb_get_property_value(reply.get())),
            static_cast<std::size_t>(xcb_get_property_value_length(reply.get()))};
}

std::uint32_t WindowReader::number(xcb_window_t window, xcb_atom_t property) const {
    const auto cookie =
        xcb_get_property(connection_.get(), 0, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, 1);
    const auto reply = owned(xcb_get_property_reply(connection_.get(), cookie, nullptr));
    std::uint32_t value = 0;
    if (reply && reply->format == 32 && xcb_get_property_value_length(reply.get()) >= int{sizeof value})
        std::memcpy(&value, xcb_get_property_value(reply.get()), sizeof value);
    return value;
}

xcb_window_t WindowReader::windowManagerWindow() const {
    const auto check = connection_.atom("_NET_SUPPORTING_WM_CHECK");
    const auto window = number(connection_.root(), check);
    // A window manager that has died leaves the property; the window it names would name itself.
    return window != XCB_WINDOW_NONE && number(window, check) == window
               ? window
               : static_cast<xcb_window_t>(XCB_WINDOW_NONE);
}

std::string WindowReader::windowManagerName() const {
    const auto window = windowManagerWindow();
    if (window == XCB_WINDOW_NONE)
        return {};
    const auto name = text(window, connection_.atom("_NET_WM_NAME"));
    return name.empty() ? "unnamed" : name;
}

xcb_window_t WindowReader::activeWindow() const {
    if (const auto active = number(connection_.root(), activeWindowAtom_); active != XCB_WINDOW_NONE)
        return active;
    const auto focus = connection_.focus();
    if (focus <= XCB_INPUT_FOCUS_FOLLOW_KEYBOARD || focus == connection_.root())
        return XCB_WINDOW_NONE;
    // A window manager says that none is active while one has the focus that it does not manage.
    return hasWindowManager() && process(focus) != ::getpid() ? static_cast<xcb_window_t>(XCB_WINDOW_NONE)
                                                              : topLevelOf(focus);
}

/// The first window upwards that names its class; frames and inner windows do not.
xcb_window_t WindowReader::topLevelOf(xcb_window_t window) const {
    for (auto each = window; each != XCB_WINDOW_NONE && each != connection_.root();) {
        if (!text(each, XCB_ATOM_WM_CLASS).empty())
            return each;
        const auto tree =
            owned(xcb_query_tree_reply(connection_.get(), xcb_query_tree(connection_.get(), each), nullptr));
        each = tree ? tree->parent : static_cast<xcb_window_t>(XCB_WINDOW_NONE);
    }
    return window;
}

bool WindowReader::exists(xcb_window_t window) const {
    return owned(xcb_get_geometry_reply(connection_.get(), xcb_get_geometry(connection_.get(), window),
                                        nullptr)) != nullptr;
}

WindowIdentity WindowReader::identity(xcb_window_t window) const {
    WindowIdentity identity;
    identity.applicationId = text(window, gtkApplicationAtom_);
    if (identity.applicationId.empty())
        identity.applicationId = text(window, kdeDesktopFileAtom_);
    constexpr std::string_view suffix = ".desktop";
    if (identity.applicationId.ends_with(suffix))
        identity.applicationId.resize(identity.applicationId.size() - suffix.size());
    // Two strings, each ended by a null character.
    const auto wmClass = text(window, XCB_ATOM_WM_CLASS);
    identity.wmClassInstance = wmClass.substr(0, wmClass.find('\0'));
    if (wmClass.size() > identity.wmClassInstance.size())
        identity.wmClassName = wmClass.c_str() + identity.wmClassInstance.size() + 1;
    return identity;
}

pid_t WindowReader::process(xcb_window_t window) const {
    if (const auto said = number(window, processAtom_); said != 0)
        return static_cast<pid_t>(said);
    return clientProcess(connection_, window);
}

bool WindowReader::isMenu(xcb_window_t window) const {
    // https://specifications.freedesktop.org/wm-spec: windows that are shown for as long as a choice is open.
    constexpr std::array kinds{"POPUP_MENU", "DROPDOWN_MENU", "MENU", "COMBO"};
    const auto type = number(window, connection_.atom("_NET_WM_WINDOW_TYPE"));
    return type != XCB_ATOM_NONE && std::ranges::any_of(kinds, [&](const char* kind) {
               return type == connection_.atom(std::string("_NET_WM_WINDOW_TYPE_") + kind);
           });
}

} // namespace glyma::x11
