#pragma once

#include "platform/linux/x11/connection.h"

#include <optional>

namespace glyma::x11 {

/// Whether the panel that the tray is part of is dark, by the colour that it wants symbols drawn in; absent
/// when there is no such tray (those of KDE and GNOME are not reached through the X server), or it does not
/// say.
std::optional<bool> isTrayDark(const Connection& connection);

} // namespace glyma::x11
