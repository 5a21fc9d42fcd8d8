#pragma once

#include "platform/linux/x11/requirements.h"

#include <string>
#include <vector>

namespace glyma::x11 {

/// What this X display can do for us. Plain values; nothing stays open.
struct Probe {
    /// As in DISPLAY; empty when there is none.
    std::string display;
    bool isReachable = false;
    Version xinput;
    bool hasXTest = false;
    bool hasXkb = false;
    /// Held keys are counted right (RECORD).
    bool hasRecord = false;
    /// Windows may be translucent.
    bool hasCompositor = false;
    /// Name of the window manager, empty when none (that says so) runs.
    std::string windowManager;
    /// The display is provided by a Wayland compositor: only X11 applications are heard.
    bool isXwayland = false;
    /// What keeps the program from working, each with what to do about it; empty when it works.
    std::vector<std::string> problems;
    /// What works less well than it could, and why.
    std::vector<std::string> remarks;
};

/// \param display  empty: the value of DISPLAY. Any thread.
Probe probe(const std::string& display = {});
/// Over a connection that is open already. \param display  what it was opened with.
Probe probe(const Connection& connection, const std::string& display);
/// Of a display that does not answer, without asking it.
Probe unreachable(const std::string& display);

} // namespace glyma::x11
