#pragma once

#include <xcb/xproto.h>

namespace glyma::x11 {

/// Asks the window manager to bring a window of ours to the front and give it the keyboard, as a task bar
/// asks for a window that the user has clicked. For a user who asked for the window by a tray's menu or a
/// command: such requests come without the time stamp by which window managers tell them from windows that
/// push themselves forward.
void activateWindow(xcb_window_t window);

} // namespace glyma::x11
