#include "preferences/qt/window_palette.h"

namespace glyma::qt {

namespace {

constexpr double readableContrast = 4.5;

QColor faded(QColor color, double opacity) {
    color.setAlphaF(static_cast<float>(opacity));
    return color;
}

/// The first of the colour's steps towards the text colour that can be read on the ground.
QColor readable(const QColor& color, const QColor& text, const QColor& ground) {
    for (int step = 0; step < 20; ++step) {
        const auto candidate = blended(faded(text, step * 0.05), color);
        if (contrastRatio(candidate, ground) >= readableContrast)
            return candidate;
    }
    return text;
}

QPalette ownPalette(bool isDark) {
    const QColor window = isDark ? QColor(36, 36, 40) : QColor(243, 243, 246);
    const QColor button = isDark ? QColor(62, 62, 69) : QColor(252, 252, 254);
    QPalette palette(button, window);
    const QColor text = isDark ? QColor(242, 242, 246) : QColor(30, 30, 34);
    for (const auto role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText})
        palette.setColor(role, text);
    palette.setColor(QPalette::Base, isDark ? QColor(21, 21, 24) : QColor(255, 255, 255));
    palette.setColor(QPalette::AlternateBase, isDark ? QColor(34, 34, 38) : QColor(247, 247, 250));
    palette.setColor(QPalette::ToolTipBase, button);
    const auto disabled = blended(faded(text, 0.45), window);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, disabled);
    return palette;
}

QColor textOn(const QColor& ground) {
    return contrastRatio(Qt::white, ground) >= 3.5 ? Qt::white : Qt::black;
}

} // namespace

bool isDark(const QPalette& palette) {
    return palette.color(QPalette::Window).lightnessF() < 0.5;
}

QPalette windowPalette(const Theme& theme, const QPalette& desktop) {
    auto palette = isDark(desktop) == theme.isDark ? desktop : ownPalette(theme.isDark);
    for (const auto group : {QPalette::Active, QPalette::Inactive}) {
        palette.setColor(group, QPalette::Highlight, theme.accent);
        palette.setColor(group, QPalette::HighlightedText, textOn(theme.accent));
        const auto text = palette.color(group, QPalette::Text);
        const auto card = cardColor(palette);
        palette.setColor(group, QPalette::PlaceholderText,
                         readable(blended(faded(text, 0.6), card), text, card));
        palette.setColor(group, QPalette::Link, readable(theme.accent, text, card));
    }
    return palette;
}

QColor cardColor(const QPalette& palette) {
    if (isDark(palette))
        return blended(faded(palette.color(QPalette::WindowText), 0.05), palette.color(QPalette::Window));
    return blended(faded(palette.color(QPalette::Base), 0.8), palette.color(QPalette::Window));
}

QColor lineColor(const QPalette& palette) {
    return faded(palette.color(QPalette::WindowText), isDark(palette) ? 0.12 : 0.1);
}

QColor accentTextColor(const QPalette& palette) {
    return readable(palette.color(QPalette::Highlight), palette.color(QPalette::WindowText),
                    palette.color(QPalette::Window));
}

QColor goodColor(const QPalette& palette) {
    return isDark(palette) ? QColor(80, 200, 120) : QColor(20, 130, 60);
}

QColor badColor(const QPalette& palette) {
    return isDark(palette) ? QColor(255, 120, 105) : QColor(196, 43, 28);
}

} // namespace glyma::qt
