#include "app/desktop/status_menu.h"

#include <utility>

namespace glyma {

StatusMenu::StatusMenu(const Actions& actions)
    : importing_(addLine(tr("Importing Library…"), [actions] { actions.openPreferences("unicode"); }))
    , permissions_(
          addLine(tr("⚠️ Adjust Permissions"), [actions] { actions.openPreferences("permissions"); }))
    , secureInput_(addLine(tr("🔒 Secure Input is blocking Glyma…"),
                           [actions] { actions.openPreferences("permissions"); })) {
    auto* const preferences =
        addAction(tr("Preferences…"), this, [actions] { actions.openPreferences("general"); });
    preferences->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Comma));
    addAction(tr("Check for Updates…"), this, actions.openUpdatePage);
    addSeparator();
    auto* const quit = addAction(tr("Quit Glyma"), this, actions.quit);
    quit->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Q));
    setLines(false, false, false);
}

StatusMenu::Line StatusMenu::addLine(const QString& text, std::function<void()> job) {
    auto* const action = addAction(text, this, std::move(job));
    return {.action = action, .separator = addSeparator()};
}

void StatusMenu::setLines(bool isImporting, bool permissionsNeeded, bool secureInputBlocked) {
    for (const auto& [line, isThere] :
         {std::pair(importing_, isImporting), std::pair(permissions_, permissionsNeeded),
          std::pair(secureInput_, secureInputBlocked)}) {
        line.action->setVisible(isThere);
        line.separator->setVisible(isThere);
    }
}

} // namespace glyma
