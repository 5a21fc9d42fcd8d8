#pragma once

#include "platform/linux/x11/connection.h"

#include <string>
#include <string_view>
#include <sys/types.h>

namespace glyma::x11 {

/// What a window says of the application that it belongs to; each may be empty.
struct WindowIdentity {
    /// _GTK_APPLICATION_ID, else _KDE_NET_WM_DESKTOP_FILE without ".desktop".
    std::string applicationId;
    /// The two halves of WM_CLASS.
    std::string wmClassInstance;
    std::string wmClassName;
    bool operator==(const WindowIdentity&) const = default;
};

/// Asks windows of other programs who they are. They vanish at any time: everything then reads as empty.
class WindowReader {
public:
    explicit WindowReader(const Connection& connection);

    /// The active window by the window manager's word, else the top-level window that has the focus: any
    /// without a window manager, ours that it does not manage with one. XCB_WINDOW_NONE when there is none.
    xcb_window_t activeWindow() const;
    bool exists(xcb_window_t window) const;
    WindowIdentity identity(xcb_window_t window) const;
    /// 0 when unknown.
    pid_t process(xcb_window_t window) const;
    /// It is a menu or a drop-down list, by its own word.
    bool isMenu(xcb_window_t window) const;
    std::string windowManagerName() const;
    bool hasWindowManager() const { return windowManagerWindow() != XCB_WINDOW_NONE; }
    xcb_atom_t activeWindowAtom() const { return activeWindowAtom_; }

private:
    xcb_window_t windowManagerWindow() const;
    xcb_window_t topLevelOf(xcb_window_t window) const;
    std::string text(xcb_window_t window, xcb_atom_t property) const;
    std::uint32_t number(xcb_window_t window, xcb_atom_t property) const;

    const Connection& connection_;
    xcb_atom_t activeWindowAtom_;
    xcb_atom_t processAtom_;
    xcb_atom_t gtkApplicationAtom_;
    xcb_atom_t kdeDesktopFileAtom_;
};

} // namespace glyma::x11
