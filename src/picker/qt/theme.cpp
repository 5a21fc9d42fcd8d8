#include "picker/qt/theme.h"

#include <algorithm>
#include <array>
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

bool isDull(const QColor& color) {
    return !color.isValid() || color.hsvSaturationF() < 0.35 || color.valueF() < 0.4;
}

/// The colour, moved towards black or white until it can be read on both grounds.
QColor readableOn(QColor color, const std::array<QColor, 2>& grounds, bool isDark) {
    const QColor end = isDark ? Qt::white : Qt::black;
    for (int step = 0; step <= 20; ++step) {
        const auto candidate = blended(withOpacity(end, step * 0.05), color);
        if (std::ranges::all_of(grounds, [&](const QColor& ground) {
                return contrastRatio(candidate, ground) >= readableContrast;
            }))
            return candidate;
    }
    return end;
}

Theme lightTheme() {
    Theme theme;
    theme.panel = QColor(250, 250, 252, 240);
    theme.opaquePanel = QColor(250, 250, 252);
    theme.stroke = QColor(0, 0, 0, 46);
    theme.separator = QColor(0, 0, 0, 20);
    theme.primary = QColor(28, 28, 32);
    theme.secondary = QColor(84, 84, 92);
    theme.tertiary = QColor(108, 108, 118);
    theme.accent = QColor(38, 112, 240);
    theme.hover = QColor(0, 0, 0, 10);
    theme.scrollBar = QColor(0, 0, 0, 70);
    theme.ranking = QColor(200, 90, 0);
    theme.shadowStrength = 0.26;
    return theme;
}

Theme darkTheme() {
    Theme theme;
    theme.isDark = true;
    theme.panel = QColor(36, 36, 41, 240);
    theme.opaquePanel = QColor(36, 36, 41);
    theme.stroke = QColor(255, 255, 255, 44);
    theme.separator = QColor(255, 255, 255, 18);
    theme.primary = QColor(244, 244, 247);
    theme.secondary = QColor(186, 186, 196);
    theme.tertiary = QColor(150, 150, 162);
    theme.accent = QColor(74, 144, 255);
    theme.hover = QColor(255, 255, 255, 12);
    theme.scrollBar = QColor(255, 255, 255, 80);
    theme.ranking = QColor(255, 159, 64);
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
    const auto [low, high] = std::minmax(luminance(one), luminance(other));
    return (high + 0.05) / (low + 0.05);
}

Theme makeTheme(bool isDark, const QColor& systemAccent) {
    auto theme = isDark ? darkTheme() : lightTheme();
    if (!isDull(systemAccent))
        theme.accent = systemAccent;
    theme.selection = withOpacity(theme.accent, selectionOpacity);

    // The worst that can lie behind the panel: black behind a light one, white behind a dark one.
    const auto ground = blended(theme.panel, isDark ? Qt::white : Qt::black);
    const std::array<QColor, 2> grounds = {ground, blended(theme.selection, ground)};
    theme.emphasis = theme.accent;
    for (auto* color : {&theme.primary, &theme.secondary, &theme.tertiary, &theme.emphasis, &theme.ranking})
        *color = readableOn(*color, grounds, isDark);
    return theme;
}

} // namespace glyma::qt
