#include "app/desktop/tray_icon.h"

#include <QCoreApplication>
#include <QDBusConnection>

#include <cmath>
#include <utility>

namespace glyma {

namespace {

constexpr Milliseconds turnInterval{100};
constexpr double turnStep = 1.0 / 12;

} // namespace

TrayIcon::TrayIcon(Scheduler& scheduler, const StatusMenu::Actions& actions,
                   std::function<std::optional<bool>()> isPanelDark)
    : scheduler_(scheduler)
    , menu_(actions)
    , openPreferences_([actions] { actions.openPreferences("general"); })
    , panelSaysDark_(std::move(isPanelDark))
    , trays_(QStringLiteral("org.kde.StatusNotifierWatcher"), QDBusConnection::sessionBus(),
             QDBusServiceWatcher::WatchForRegistration)
    , appearanceChanged_(appearance_.changed.connect([this] { draw(); })) {
    make();
    // Qt decides once for the kind of tray, and the session may start us before it has one.
    QObject::connect(&trays_, &QDBusServiceWatcher::serviceRegistered, &trays_, [this] { make(); });
}

void TrayIcon::make() {
    icon_ = std::make_unique<QSystemTrayIcon>();
    icon_->setContextMenu(&menu_);
    QObject::connect(icon_.get(), &QSystemTrayIcon::activated, icon_.get(),
                     [this](QSystemTrayIcon::ActivationReason reason) {
                         if (reason == QSystemTrayIcon::Trigger)
                             openPreferences_();
                     });
    draw();
    icon_->show();
}

void TrayIcon::show(const Status& status) {
    menu_.setLines(status.isImporting, status.permissionsNeeded, status.secureInputBlocked);
    if (status == status_)
        return;
    status_ = status;
    turn_ = 0;
    turning_.reset();
    if (status.isImporting)
        turning_ = scheduler_.every(turnInterval, [this] {
            turn_ = std::fmod(turn_ + turnStep, 1);
            draw();
        });
    draw();
}

void TrayIcon::draw() {
    icon_->setIcon(statusIcon(status_, isPanelDark(), turn_));
    icon_->setToolTip(toolTip());
}

bool TrayIcon::isPanelDark() const {
    if (const auto said = panelSaysDark_())
        return *said;
    // GNOME's panel is dark whatever the windows are.
    return appearance_.theme().isDark || qgetenv("XDG_CURRENT_DESKTOP").contains("GNOME");
}

QString TrayIcon::toolTip() const {
    const auto said = [](const char* text) { return QCoreApplication::translate("glyma::TrayIcon", text); };
    if (status_.isImporting)
        return said(QT_TRANSLATE_NOOP("glyma::TrayIcon", "Glyma: importing the library"));
    if (status_.permissionsNeeded)
        return said(QT_TRANSLATE_NOOP("glyma::TrayIcon", "Glyma: a permission is missing"));
    if (status_.secureInputBlocked)
        return said(QT_TRANSLATE_NOOP("glyma::TrayIcon", "Glyma: Secure Input is on"));
    return said(QT_TRANSLATE_NOOP("glyma::TrayIcon", "Glyma"));
}

} // namespace glyma
