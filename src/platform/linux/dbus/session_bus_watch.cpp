#include "platform/linux/dbus/session_bus_watch.h"

#include <QtDBus/QDBusConnection>

#include <utility>

namespace glyma::dbus {

SessionBusWatch::SessionBusWatch(std::function<void()> lost)
    : lost_(std::move(lost)) {
    // The library itself sends this one when the connection has ended.
    QDBusConnection::sessionBus().connect({}, QStringLiteral("/org/freedesktop/DBus/Local"),
                                          QStringLiteral("org.freedesktop.DBus.Local"),
                                          QStringLiteral("Disconnected"), this, SLOT(disconnected()));
}

void SessionBusWatch::disconnected() {
    if (const auto lost = std::exchange(lost_, nullptr))
        lost();
}

} // namespace glyma::dbus
