#pragma once

#include <QColor>

namespace glyma::qt {

struct TextColors {
    QColor primary;
    QColor secondary;
    QColor tertiary;
    QColor emphasis; ///< matched characters
    QColor ranking;
};

/// The picker's colours. Text colours are opaque and readable (contrast of at least 4.5) on their ground,
/// whatever shines through the panel.
struct Theme {
    bool isDark = false;
    QColor panel;        ///< slightly translucent
    QColor blurredPanel; ///< more so, where what lies behind is blurred
    QColor opaquePanel;  ///< where nothing can shine through
    QColor stroke;       ///< the outline
    QColor separator;    ///< between header and list
    QColor accent;
    QColor selection; ///< the accent at opacity 0.3
    QColor hover;
    QColor scrollBar;
    double shadowStrength = 0;
    TextColors text;
    TextColors selectedText; ///< on a selected row
};

/// \param systemAccent  the desktop's accent colour; a dull one (or none) is replaced by the program's own.
Theme makeTheme(bool isDark, const QColor& systemAccent);

/// The colour seen when `top` (its alpha counts) lies on the opaque `bottom`.
QColor blended(const QColor& top, const QColor& bottom);
/// 1 to 21, as WCAG 2 defines it, of two opaque colours.
double contrastRatio(const QColor& one, const QColor& other);

} // namespace glyma::qt
