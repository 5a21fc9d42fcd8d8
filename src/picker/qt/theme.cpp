#include "picker/qt/theme.h"

#include <algorithm>
#include <cmath>

namespace glyma::qt {

namespace {

constexpr double selectionOpacity = 0.3;
constexpr double readableContrast = 4.5;

double linear(double channel) {
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& color) {
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

QColor withOpacity(QColor color, double opacity) {
    color.setAlphaF(static_cast<float>(opacity));
    return color;
}

/// The highlight of Qt's own style, that is, of a desktop that tells no accent.
constexpr QRgb stockHighlight = qRgb(48, 140, 198);

bool isDull(const QColor& color) {
    return !color.isValid() || color.rgb() == stockHighlight || color.hsvSaturationF() < 0.35 ||
           color.valueF() < 0.4;
}

/// The colour, moved towards black or white until it can be read on the ground.
QColor readableOn(const QColor& color, const QColor& ground, bool isDark) {
    const QColor end = isDark ? Qt::white : Qt::black;
    for (int step = 0; step <= 20; ++step) {
        const auto candidate = blended(withOpacity(end, step * 0.05), color);
        if (contrastRatio(candidate, ground) >= readableContrast)
            return candidate;
    }
    return end;
}

TextColors readableOn(TextColors colors, const QColor& ground, bool isDark) {
    for (auto* color :
         {&colors.primary, &colors.secondary, &colors.tertiary, &colors.emphasis, &colors.ranking})
        *color = readableOn(*color, ground, isDark);
    return colors;
}

Theme lightTheme() {
    Theme theme;
    theme.panel = QColor(251, 251, 253, 248);
    theme.blurredPanel = QColor(250, 250, 252, 232);
    theme.opaquePanel = QColor(251, 251, 253);
    theme.stroke = QColor(0, 0, 0, 46);
    theme.separator = QColor(0, 0, 0, 20);
    theme.text.primary = QColor(28, 28, 32);
    theme.text.secondary = QColor(84, 84, 92);
    theme.text.tertiary = QColor(108, 108, 118);
    theme.accent = QColor(38, 112, 240);
    theme.hover = QColor(0, 0, 0, 10);
    theme.scrollBar = QColor(0, 0, 0, 70);
    theme.text.ranking = QColor(200, 90, 0);
    theme.shadowStrength = 0.26;
    return theme;
}

Theme darkTheme() {
    Theme theme;
    theme.isDark = true;
    theme.panel = QColor(36, 36, 41, 248);
    theme.blurredPanel = QColor(36, 36, 41, 232);
    theme.opaquePanel = QColor(36, 36, 41);
    theme.stroke = QColor(255, 255, 255, 44);
    theme.separator = QColor(255, 255, 255, 18);
    theme.text.primary = QColor(244, 244, 247);
    theme.text.secondary = QColor(186, 186, 196);
    theme.text.tertiary = QColor(150, 150, 162);
    theme.accent = QColor(74, 144, 255);
    theme.hover = QColor(255, 255, 255, 12);
    theme.scrollBar = QColor(255, 255, 255, 80);
    theme.text.ranking = QColor(255, 159, 64);
    theme.shadowStrength = 0.5;
    return theme;
}

} // namespace

QColor blended(const QColor& top, const QColor& bottom) {
    const auto mix = [alpha = top.alphaF()](float over, float under) {
        return over * alpha + under * (1 - alpha);
    };
    return QColor::fromRgbF(mix(top.redF(), bottom.redF()), mix(top.greenF(), bottom.greenF()),
                            mix(top.blueF(), bottom.blueF()));
}

double contrastRatio(const QColor& one, const QColor& other) {
    const auto [low, high] = std::minmax({luminance(one), luminance(other)});
    return (high + 0.05) / (low + 0.05);
}

Theme makeTheme(bool isDark, const QColor& systemAccent) {
    auto theme = isDark ? darkTheme() : lightTheme();
    if (!isDull(systemAccent))
        theme.accent = systemAccent;
    theme.selection = withOpacity(theme.accent, selectionOpacity);

    // The worst that can lie behind the panel: black behind a light one, white behind a dark one.
    const auto plain = blended(theme.blurredPanel, isDark ? Qt::white : Qt::black);
    theme.text.emphasis = theme.accent;
    theme.selectedText = readableOn(theme.text, blended(theme.selection, plain), isDark);
    theme.text = readableOn(theme.text, plain, isDark);
    return theme;
}

} // namespace glyma::qt
