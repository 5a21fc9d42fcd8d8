#include "platform/linux/dbus/accessibility_bus.h"

#include <QtDBus/QDBusPendingCallWatcher>
#include <QtDBus/QDBusVariant>

namespace glyma::dbus {

namespace {

const QString service = QStringLiteral("org.a11y.Bus");
const QString path = QStringLiteral("/org/a11y/bus");
const QString properties = QStringLiteral("org.freedesktop.DBus.Properties");
const QString status = QStringLiteral("org.a11y.Status");
const QString isEnabled = QStringLiteral("IsEnabled");
const QString connectionName = QStringLiteral("glyma-accessibility");
constexpr int answerMilliseconds = 1000;

QDBusMessage call(const QString& method, const QVariantList& arguments) {
    auto message = QDBusMessage::createMethodCall(service, path, properties, method);
    message.setArguments(arguments);
    return message;
}

/// As libatspi finds it, but for a property of the root window, which is there only where there is no session
/// bus.
QString addressOf(const QDBusConnection& bus) {
    if (qEnvironmentVariableIsSet("AT_SPI_BUS_ADDRESS"))
        return qEnvironmentVariable("AT_SPI_BUS_ADDRESS");
    const auto answer =
        bus.call(QDBusMessage::createMethodCall(service, path, service, QStringLiteral("GetAddress")),
                 QDBus::Block, answerMilliseconds);
    return answer.arguments().value(0).toString();
}

Permission withoutBus() {
    return {.isGranted = false,
            .finding =
                Message::tr("there is no session bus, through which applications are asked for their text"),
            .remedy = Message::tr(
                "Start the desktop session through dbus-run-session, or install dbus-user-session.")};
}

Permission unreachable(const Message& why) {
    return {.isGranted = false,
            .finding = why,
            .remedy = Message::tr("Install the package at-spi2-core, then log out and in again; if it is "
                                  "installed, start Glyma again.")};
}

Permission permissionOf(bool isOn) {
    if (isOn)
        return {.isGranted = true,
                .finding = Message::tr("the accessibility bus answers and is switched on"),
                .remedy = {}};
    return {.isGranted = false,
            .finding = Message::tr("the accessibility bus is switched off"),
            .remedy = Message::tr(
                "Glyma switches it on when it starts; its preferences do so on the page Permissions."),
            .canBeObtained = true};
}

Permission permissionOf(const QDBusMessage& answer) {
    if (answer.type() == QDBusMessage::ReplyMessage && !answer.arguments().isEmpty())
        return permissionOf(answer.arguments().constFirst().value<QDBusVariant>().variant().toBool());
    return {
        .isGranted = false,
        .finding =
            Message::tr("the accessibility bus does not answer: %1").arg(answer.errorMessage().toStdString()),
        .remedy = Message::tr("Install the package at-spi2-core, then log out and in again.")};
}

} // namespace

AccessibilityBus::AccessibilityBus()
    : bus_(QDBusConnection::sessionBus())
    , owner_(service, bus_, QDBusServiceWatcher::WatchForOwnerChange)
    , answered_(permissionOf(true)) {
    if (!bus_.isConnected()) {
        answered_ = withoutBus();
        return;
    }
    bus_.connect(service, path, properties, QStringLiteral("PropertiesChanged"), this,
                 SLOT(propertiesChanged(QString, QVariantMap, QStringList)));
    connect(&owner_, &QDBusServiceWatcher::serviceOwnerChanged, this, [this] { ask(); });
    ask();
}

Permission AccessibilityBus::current() const {
    return answered_.isGranted && !obstacle_.isEmpty() ? unreachable(obstacle_) : answered_;
}

void AccessibilityBus::check() {
    if (!answered_.isGranted)
        ask();
}

void AccessibilityBus::ask() {
    if (!bus_.isConnected())
        return set(withoutBus());
    auto* watcher = new QDBusPendingCallWatcher(
        bus_.asyncCall(call(QStringLiteral("Get"), {status, isEnabled}), answerMilliseconds), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        watcher->deleteLater();
        set(permissionOf(watcher->reply()));
    });
}

void AccessibilityBus::obtain() {
    if (!bus_.isConnected())
        return;
    auto* watcher = new QDBusPendingCallWatcher(
        bus_.asyncCall(call(QStringLiteral("Set"),
                            {status, isEnabled, QVariant::fromValue(QDBusVariant(QVariant(true)))}),
                       answerMilliseconds),
        this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        watcher->deleteLater();
        ask();
    });
}

void AccessibilityBus::propertiesChanged(const QString& interface, const QVariantMap& values,
                                         const QStringList& invalidated) {
    if (interface != status)
        return;
    if (values.contains(isEnabled))
        set(permissionOf(values.value(isEnabled).toBool()));
    else if (invalidated.contains(isEnabled))
        ask();
}

void AccessibilityBus::set(const Permission& permission) {
    const auto before = current();
    answered_ = permission;
    announceIfOther(before);
}

void AccessibilityBus::setObstacle(const Message& obstacle) {
    const auto before = current();
    obstacle_ = obstacle;
    announceIfOther(before);
}

void AccessibilityBus::announceIfOther(const Permission& before) {
    if (current() != before)
        changed_.emit();
}

Subscription AccessibilityBus::observe(std::function<void()> callback) {
    return changed_.connect(std::move(callback));
}

Permission AccessibilityBus::read() {
    const auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return withoutBus();
    const auto permission = permissionOf(
        bus.call(call(QStringLiteral("Get"), {status, isEnabled}), QDBus::Block, answerMilliseconds));
    if (!permission.isGranted)
        return permission;
    const auto connection = QDBusConnection::connectToBus(addressOf(bus), connectionName);
    const auto error = connection.lastError().message().toStdString();
    const bool isReached = connection.isConnected();
    QDBusConnection::disconnectFromBus(connectionName);
    return isReached
               ? permission
               : unreachable(Message::tr("the accessibility bus does not accept connections: %1").arg(error));
}

} // namespace glyma::dbus
