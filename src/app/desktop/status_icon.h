#pragma once

#include <QColor>
#include <QIcon>
#include <QImage>

#include <string>
#include <string_view>

namespace glyma {

/// What the icon in the tray tells.
struct Status {
    bool isImporting = false;
    bool permissionsNeeded = false;
    bool secureInputBlocked = false;
    /// A value of the setting `menuBarIcon`.
    std::string menuBarIcon = "trigger";
    std::string triggerCharacter = ":";
    bool operator==(const Status&) const = default;
};

/// The name of the symbol to show; empty: the trigger character is shown.
std::string statusSymbol(const Status& status);

/// \param turn  of the symbol of an import, 0 to 1 for a whole circle clockwise.
/// \param size  device pixels.
/// \return black where it is opaque: a stencil for the colour of the panel.
QImage statusStencil(const Status& status, int size, double turn = 0);

/// The stencil in a colour that shows on the panel, with a faint rim of the opposite one for panels that are
/// not as light or dark as the desktop says.
QIcon statusIcon(const Status& status, bool isPanelDark, double turn = 0);

/// The program's own icon: the trigger's two dots on a coloured tile.
QIcon programIcon();

} // namespace glyma
