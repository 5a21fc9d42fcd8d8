#include "platform/linux/dbus/notification.h"

#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusMessage>

namespace glyma::dbus {

void notify(const QString& summary, const QString& body) {
    const auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return;
    const QString service = QStringLiteral("org.freedesktop.Notifications");
    auto message = QDBusMessage::createMethodCall(service, QStringLiteral("/org/freedesktop/Notifications"),
                                                  service, QStringLiteral("Notify"));
    constexpr uint replacesNone = 0;
    constexpr int serverDecidesWhenItGoes = -1;
    message.setArguments(
        {QStringLiteral("Glyma"), replacesNone, QStringLiteral("glyma"), summary, body, QStringList(),
         QVariantMap{{QStringLiteral("desktop-entry"), QStringLiteral("net.quillaby.Glyma")}},
         serverDecidesWhenItGoes});
    bus.send(message);
}

} // namespace glyma::dbus
