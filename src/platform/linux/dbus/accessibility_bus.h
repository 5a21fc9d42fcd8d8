#pragma once

#include "platform/permission.h"

#include <QObject>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusServiceWatcher>

#include <functional>
#include <string>

namespace glyma::dbus {

/// The permission to ask applications for their text: the session's accessibility bus is switched on and can
/// be reached. The first is told by the session bus, so that nothing is asked again while all is well, the
/// second by whoever talks over it. Needs the application object; main thread.
class AccessibilityBus : public QObject, public PermissionSource {
    Q_OBJECT

public:
    /// Counts as granted until the first answer has come.
    AccessibilityBus();

    Permission current() const override;
    /// Asks only where the last answer was no.
    void check() override;
    /// Switches it on for the session.
    void obtain() override;
    [[nodiscard]] Subscription observe(std::function<void()> callback) override;

    /// What keeps applications from being reached although the bus is switched on, a sentence without its
    /// full stop; empty: nothing.
    void setObstacle(const Message& obstacle);

    /// Asks, and connects to the accessibility bus, as the program would when it starts. Waits for the
    /// answer, at most a second.
    static Permission read();

private Q_SLOTS:
    void propertiesChanged(const QString& interface, const QVariantMap& values,
                           const QStringList& invalidated);

private:
    void ask();
    void set(const Permission& permission);
    void announceIfOther(const Permission& before);

    QDBusConnection bus_;
    QDBusServiceWatcher owner_;
    Permission answered_;
    Message obstacle_;
    Signal<> changed_;
};

} // namespace glyma::dbus
