#pragma once

#include <QMenu>

#include <functional>
#include <string>

namespace glyma {

/// The menu of the program's icon in the tray: what needs attention, the preferences, the end. Main thread.
class StatusMenu : public QMenu {
    Q_OBJECT

public:
    struct Actions {
        /// \param tab  the page to show.
        std::function<void(const std::string& tab)> openPreferences;
        std::function<void()> openUpdatePage;
        std::function<void()> quit;
    };
    explicit StatusMenu(const Actions& actions);

    /// Which of the lines that need attention are there.
    void setLines(bool isImporting, bool permissionsNeeded, bool secureInputBlocked);

private:
    /// A line and the separator below it.
    struct Line {
        QAction* action;
        QAction* separator;
    };
    Line addLine(const QString& text, std::function<void()> job);

    Line importing_;
    Line permissions_;
    Line secureInput_;
};

} // namespace glyma
