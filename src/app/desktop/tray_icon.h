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

namespace glyma {

/// The program's place in the desktop's tray, with its menu. Main thread.
class TrayIcon {
public:
    /// \param scheduler  outlives the icon.
    TrayIcon(Scheduler& scheduler, const StatusMenu::Actions& actions);

    void show(const Status& status);
    /// Whether the desktop shows it.
    static bool isShown() { return QSystemTrayIcon::isSystemTrayAvailable(); }

private:
    void make();
    void draw();
    QString toolTip() const;

    Scheduler& scheduler_;
    StatusMenu menu_;
    std::function<void()> openPreferences_;
    qt::Appearance appearance_;
    Status status_;
    double turn_ = 0;
    std::unique_ptr<QSystemTrayIcon> icon_;
    QDBusServiceWatcher trays_;
    Subscription appearanceChanged_;
    Subscription turning_;
};

} // namespace glyma
