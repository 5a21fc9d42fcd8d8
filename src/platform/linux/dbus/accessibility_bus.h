#pragma once

#include "platform/permission.h"

#include <QObject>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusServiceWatcher>

#include <functional>

namespace glyma::dbus {

/// The permission to ask applications for their text: the session's accessibility bus answers and is switched
/// on. Told by the bus itself, so that nothing is asked again while all is well. Needs the application
/// object; main thread.
class AccessibilityBus : public QObject, public PermissionSource {
    Q_OBJECT

public:
    /// Counts as granted until the first answer has come.
    AccessibilityBus();

    Permission current() const override { return current_; }
    /// Asks only where the last answer was no.
    void check() override;
    /// Switches it on for the session.
    void obtain() override;
    [[nodiscard]] Subscription observe(std::function<void()> callback) override;

    /// Asks and waits for the answer, at most a second.
    static Permission read();

private Q_SLOTS:
    void propertiesChanged(const QString& interface, const QVariantMap& values,
                           const QStringList& invalidated);

private:
    void ask();
    void set(const Permission& permission);

    QDBusConnection bus_;
    QDBusServiceWatcher owner_;
    Permission current_;
    Signal<> changed_;
};

} // namespace glyma::dbus
