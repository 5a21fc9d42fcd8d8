#include "charinfo/qt/glyph_tile.h"

#include "charinfo/stand_in.h"

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>

namespace glyma::qt {

namespace {

// Logical pixels.
constexpr int side = 84;
constexpr double radius = 10;
constexpr double glyphSize = 50;
constexpr double padding = 9;
constexpr double standInPadding = 14;
constexpr double standInSize = 22;
constexpr double smallestStandIn = 9;

QColor withAlpha(QColor color, double alpha) {
    color.setAlphaF(static_cast<float>(alpha));
    return color;
}

} // namespace

GlyphTile::GlyphTile(Glyphs& glyphs, std::string character, QWidget* parent)
    : QWidget(parent)
    , glyphs_(glyphs)
    , character_(withCarrier(character)) {
    auto standIn = invisibleStandIn(character);
    if (standIn.empty() && !glyphs.hasFont(character_))
        standIn = missingGlyphStandIn(character);
    standIn_ = QString::fromStdString(standIn);
    setFixedSize(side, side);
}

QSize GlyphTile::sizeHint() const {
    return {side, side};
}

void GlyphTile::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const auto color = palette().color(QPalette::WindowText);
    painter.setPen(Qt::NoPen);
    painter.setBrush(withAlpha(color, 0.055));
    painter.drawRoundedRect(rect(), radius, radius);
    const QRectF box = QRectF(rect()).adjusted(padding, padding, -padding, -padding);
    if (standIn_.isEmpty())
        glyphs_.draw(painter, box, character_, glyphSize, color);
    else
        paintStandIn(painter, box);
}

void GlyphTile::paintStandIn(QPainter& painter, const QRectF& box) const {
    const auto color = palette().color(QPalette::WindowText);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(withAlpha(color, 0.4), 1.25, Qt::CustomDashLine));
    QPen pen = painter.pen();
    pen.setDashPattern({3, 2.4});
    painter.setPen(pen);
    painter.drawRoundedRect(box, radius - 4, radius - 4);
    auto font = this->font();
    font.setWeight(QFont::DemiBold);
    font.setPixelSize(static_cast<int>(standInSize));
    const double widest = QFontMetricsF(font).horizontalAdvance(standIn_);
    const double room = rect().width() - 2 * standInPadding;
    font.setPixelSize(
        static_cast<int>(std::max(smallestStandIn, std::min(1.0, room / widest) * standInSize)));
    painter.setFont(font);
    painter.setPen(withAlpha(color, 0.85));
    painter.drawText(box, Qt::AlignCenter, QFontMetricsF(font).elidedText(standIn_, Qt::ElideMiddle, room));
}

} // namespace glyma::qt
