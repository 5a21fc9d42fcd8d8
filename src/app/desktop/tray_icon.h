#pragma once

#include "app/desktop/status_icon.h"
#include "app/desktop/status_menu.h"
#include "picker/qt/appearance.h"
#include "platform/scheduler.h"
#include "platform/subscription.h"

#include <QDBusServiceWatcher>
#include <QSystemTrayIcon>

#include <functional>
#include <memory>
#include <optional>

namespace glyma {

/// The program's place in the desktop's tray, with its menu. Main thread.
class TrayIcon {
public:
    /// \param scheduler    outlives the icon.
    /// \param isPanelDark  by the panel's own word; absent when it does not say.
    TrayIcon(Scheduler& scheduler, const StatusMenu::Actions& actions,
             std::function<std::optional<bool>()> isPanelDark);

    void show(const Status& status);
    /// Whether the desktop shows it.
    static bool isShown() { return QSystemTrayIcon::isSystemTrayAvailable(); }

private:
    void make();
    void draw();
    bool isPanelDark() const;
    QString toolTip() const;

    Scheduler& scheduler_;
    StatusMenu menu_;
    std::function<void()> openPreferences_;
    std::function<std::optional<bool>()> panelSaysDark_;
    qt::Appearance appearance_;
    Status status_;
    double turn_ = 0;
    std::unique_ptr<QSystemTrayIcon> icon_;
    QDBusServiceWatcher trays_;
    Subscription appearanceChanged_;
    Subscription turning_;
};

} // namespace glyma
