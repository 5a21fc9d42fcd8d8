#include "picker/qt/theme.h"

#include <gtest/gtest.h>

namespace glyma::qt {
namespace {

TEST(Theme, TextIsReadableWithAnyAccentOverAnything) {
    for (const bool isDark : {false, true})
        for (int hue = -30; hue < 360; hue += 30)
            for (const QColor& behind : {QColor(Qt::black), QColor(Qt::gray), QColor(Qt::white)}) {
                const auto accent = hue < 0 ? QColor() : QColor::fromHsv(hue, 255, 255);
                const auto theme = makeTheme(isDark, accent);
                for (const QColor& panel : {theme.panel, theme.blurredPanel, theme.opaquePanel}) {
                    const auto plain = blended(panel, behind);
                    const auto check = [&](const TextColors& text, const QColor& ground) {
                        for (const auto& color :
                             {text.primary, text.secondary, text.tertiary, text.emphasis, text.ranking}) {
                            EXPECT_EQ(color.alpha(), 255);
                            EXPECT_GE(contrastRatio(color, ground), 4.45)
                                << (isDark ? "dark " : "light ") << hue << " " << color.name().toStdString()
                                << " on " << ground.name().toStdString();
                        }
                    };
                    check(theme.text, plain);
                    check(theme.selectedText, blended(theme.selection, plain));
                }
            }
}

TEST(Theme, KeepsALivelyAccentAndReplacesADullOne) {
    const QColor orange(230, 97, 0);
    EXPECT_EQ(makeTheme(false, orange).accent, orange);
    EXPECT_EQ(makeTheme(true, orange).selection.rgb(), orange.rgb());
    EXPECT_NEAR(makeTheme(true, orange).selection.alphaF(), 0.3, 0.005);
    const auto own = makeTheme(false, {}).accent;
    for (const QColor& dull : {QColor(128, 128, 128), QColor(250, 250, 250), QColor(20, 20, 30)})
        EXPECT_EQ(makeTheme(false, dull).accent, own);
}

TEST(Theme, ContrastIsThatOfTheAccessibilityGuidelines) {
    EXPECT_NEAR(contrastRatio(Qt::black, Qt::white), 21, 0.001);
    EXPECT_NEAR(contrastRatio(QColor(118, 118, 118), Qt::white), 4.54, 0.01);
    EXPECT_NEAR(contrastRatio(Qt::white, QColor(118, 118, 118)), 4.54, 0.01);
}

} // namespace
} // namespace glyma::qt
