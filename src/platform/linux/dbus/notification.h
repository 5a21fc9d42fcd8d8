#pragma once

#include <QString>

namespace glyma::dbus {

/// Shows a message of the program through the desktop's notifications; without any, nothing happens. Returns
/// at once. Needs the application object; main thread.
void notify(const QString& summary, const QString& body);

} // namespace glyma::dbus
