#pragma once

#include "picker/qt/theme.h"

#include <QPalette>

namespace glyma::qt {

/// The colours of the preferences. The desktop's own where it already is as light or dark as wanted, ours
/// otherwise. Placeholder text, in which captions are written, can be read in either.
QPalette windowPalette(const Theme& theme, const QPalette& desktop);

// Colours derived from a window's palette.

/// The ground of a group of rows.
QColor cardColor(const QPalette& palette);
/// The outline of a group and the lines between its rows.
QColor lineColor(const QPalette& palette);
/// The accent as text on the window.
QColor accentTextColor(const QPalette& palette);
QColor goodColor(const QPalette& palette);
QColor badColor(const QPalette& palette);
bool isDark(const QPalette& palette);

} // namespace glyma::qt
