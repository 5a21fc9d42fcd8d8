#include "preferences/qt/window_palette.h"

#include <gtest/gtest.h>

namespace glyma::qt {
namespace {

QPalette desktopPalette(const QColor& window, const QColor& text) {
    QPalette palette(window, window);
    palette.setColor(QPalette::Base, window.lightnessF() < 0.5 ? window.darker(120) : QColor(Qt::white));
    palette.setColor(QPalette::WindowText, text);
    palette.setColor(QPalette::Text, text);
    return palette;
}

const QPalette lightDesktop = desktopPalette(QColor(239, 240, 241), QColor(35, 38, 41));
const QPalette darkDesktop = desktopPalette(QColor(42, 46, 50), QColor(252, 252, 252));

TEST(WindowPalette, TakesTheDesktopsColoursOnlyWhereTheyAreAsLightAsWanted) {
    for (const bool dark : {false, true})
        for (const auto& desktop : {lightDesktop, darkDesktop}) {
            const auto palette = windowPalette(makeTheme(dark, {}), desktop);
            EXPECT_EQ(isDark(palette), dark);
            EXPECT_EQ(palette.color(QPalette::Window) == desktop.color(QPalette::Window),
                      isDark(desktop) == dark);
        }
}

TEST(WindowPalette, EveryTextCanBeReadWithAnyAccent) {
    for (const bool dark : {false, true})
        for (const auto& desktop : {lightDesktop, darkDesktop})
            for (int hue = 0; hue < 360; hue += 30) {
                const auto palette = windowPalette(makeTheme(dark, QColor::fromHsv(hue, 255, 255)), desktop);
                const auto card = cardColor(palette);
                const auto window = palette.color(QPalette::Window);
                for (const auto& [text, ground, least] :
                     {std::tuple(palette.color(QPalette::WindowText), window, 7.0),
                      std::tuple(palette.color(QPalette::Text), card, 7.0),
                      std::tuple(palette.color(QPalette::PlaceholderText), card, 4.45),
                      std::tuple(palette.color(QPalette::Link), card, 4.45),
                      std::tuple(accentTextColor(palette), window, 4.45),
                      std::tuple(badColor(palette), window, 4.45),
                      std::tuple(palette.color(QPalette::HighlightedText), palette.color(QPalette::Highlight),
                                 3.4)})
                    EXPECT_GE(contrastRatio(text, ground), least)
                        << (dark ? "dark " : "light ") << hue << " " << text.name().toStdString() << " on "
                        << ground.name().toStdString();
            }
}

} // namespace
} // namespace glyma::qt
