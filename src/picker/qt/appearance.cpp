#include "picker/qt/appearance.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QEvent>
#include <QGuiApplication>
#include <QMap>
#include <QPalette>

namespace glyma::qt {

namespace {

using SettingsByNamespace = QMap<QString, QVariantMap>;

const QString portalService = QStringLiteral("org.freedesktop.portal.Desktop");
const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString portalInterface = QStringLiteral("org.freedesktop.portal.Settings");
const QString appearanceNamespace = QStringLiteral("org.freedesktop.appearance");
const QString colorSchemeKey = QStringLiteral("color-scheme");
const QString accentKey = QStringLiteral("accent-color");

/// The portal's (ddd): red, green and blue from 0 to 1; anything outside means "no preference".
QColor accentOf(const QVariant& value) {
    if (!value.canConvert<QDBusArgument>())
        return {};
    const auto argument = value.value<QDBusArgument>();
    if (argument.currentSignature() != QLatin1String("(ddd)"))
        return {};
    double red = -1, green = -1, blue = -1;
    argument.beginStructure();
    argument >> red >> green >> blue;
    argument.endStructure();
    const auto inRange = [](double channel) { return channel >= 0 && channel <= 1; };
    if (!inRange(red) || !inRange(green) || !inRange(blue))
        return {};
    return QColor::fromRgbF(static_cast<float>(red), static_cast<float>(green), static_cast<float>(blue));
}

} // namespace

Appearance::Appearance() {
    rebuild();
    qApp->installEventFilter(this);
    askPortal();
}

void Appearance::askPortal() {
    auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return;
    qDBusRegisterMetaType<SettingsByNamespace>();
    bus.connect(portalService, portalPath, portalInterface, QStringLiteral("SettingChanged"), this,
                SLOT(settingChanged(QDBusMessage)));
    auto call =
        QDBusMessage::createMethodCall(portalService, portalPath, portalInterface, QStringLiteral("ReadAll"));
    call << QStringList{appearanceNamespace};
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* finished) {
        finished->deleteLater();
        const QDBusPendingReply<SettingsByNamespace> reply = *finished;
        if (reply.isError())
            return;
        const auto settings = reply.value().value(appearanceNamespace);
        for (const auto& key : settings.keys())
            apply(key, settings.value(key));
    });
}

void Appearance::settingChanged(const QDBusMessage& message) {
    const auto arguments = message.arguments();
    if (arguments.size() == 3 && arguments[0].toString() == appearanceNamespace)
        apply(arguments[1].toString(), arguments[2].value<QDBusVariant>().variant());
}

void Appearance::apply(const QString& key, const QVariant& value) {
    // 1 asks for dark, 2 for light, 0 leaves it to the application.
    if (key == colorSchemeKey)
        portalDark_ = value.toUInt() == 1   ? std::optional(true)
                      : value.toUInt() == 2 ? std::optional(false)
                                            : std::nullopt;
    else if (key == accentKey)
        portalAccent_ = accentOf(value);
    else
        return;
    rebuild();
}

bool Appearance::eventFilter(QObject* watched, QEvent* event) {
    if (watched == qApp && event->type() == QEvent::ApplicationPaletteChange)
        rebuild();
    return QObject::eventFilter(watched, event);
}

void Appearance::rebuild() {
    const auto palette = QGuiApplication::palette();
    const auto accent =
        portalAccent_.isValid() ? portalAccent_ : palette.color(QPalette::Active, QPalette::Highlight);
    theme_ = makeTheme(isDark(), accent);
    changed.emit();
}

bool Appearance::isDark() const {
    const auto forced = qgetenv("GLYMA_THEME");
    if (forced == "dark" || forced == "light")
        return forced == "dark";
    if (portalDark_)
        return *portalDark_;
    return QGuiApplication::palette().color(QPalette::Window).lightnessF() < 0.5;
}

} // namespace glyma::qt
