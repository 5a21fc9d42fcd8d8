#pragma once

#include <QColor>

namespace glyma::qt {

/// The picker's colours. Text colours are opaque and readable (contrast of at least 4.5) on the panel, also
/// on a selected row and whatever shines through the panel.
struct Theme {
    bool isDark = false;
    QColor panel;       ///< translucent
    QColor opaquePanel; ///< where nothing can shine through
    QColor stroke;      ///< the outline
    QColor separator;   ///< between header and list
    QColor primary;
    QColor secondary;
    QColor tertiary;
    QColor accent;
    QColor selection; ///< the accent at opacity 0.3
    QColor emphasis;  ///< matched characters
    QColor hover;
    QColor scrollBar;
    QColor ranking;
    double shadowStrength = 0;
};

/// \param systemAccent  the desktop's accent colour; a dull one (or none) is replaced by the program's own.
Theme makeTheme(bool isDark, const QColor& systemAccent);

/// The colour seen when `top` (its alpha counts) lies on the opaque `bottom`.
QColor blended(const QColor& top, const QColor& bottom);
/// 1 to 21, as WCAG 2 defines it, of two opaque colours.
double contrastRatio(const QColor& one, const QColor& other);

} // namespace glyma::qt
