#pragma once

#include <QIcon>
#include <QMenu>
#include <QSystemTrayIcon>

#include <functional>

namespace glyma {

/// The program's own icon: the trigger's two dots on a coloured tile, so that it shows on light and dark
/// panels.
QIcon programIcon();

/// The program's place in the desktop's tray, with its menu. Main thread.
class TrayIcon {
public:
    explicit TrayIcon(std::function<void()> onQuit);

    /// A line at the top of the menu and the tooltip; empty: everything works.
    void setProblem(const QString& problem);

private:
    QMenu menu_;
    QAction* problem_;
    QSystemTrayIcon icon_;
};

} // namespace glyma
