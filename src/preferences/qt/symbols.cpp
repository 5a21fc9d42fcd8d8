#include "preferences/qt/symbols.h"

#include "preferences/qt/window_palette.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace glyma::qt {

namespace {

/// All drawings are made on a square of this many units, with strokes of `strokeWidth`.
constexpr double side = 24;
constexpr double strokeWidth = 1.6;

QPointF onCircle(QPointF centre, double radius, double turn) {
    const double angle = 2 * std::numbers::pi * turn;
    return {centre.x() + radius * std::cos(angle), centre.y() + radius * std::sin(angle)};
}

QPainterPath lines(std::initializer_list<std::pair<QPointF, QPointF>> ends) {
    QPainterPath path;
    for (const auto& [from, to] : ends) {
        path.moveTo(from);
        path.lineTo(to);
    }
    return path;
}

QPainterPath gear() {
    constexpr int teeth = 8;
    const QPointF centre(12, 12);
    QPainterPath path;
    for (int tooth = 0; tooth < teeth; ++tooth) {
        const double turn = double(tooth) / teeth;
        for (const auto& [radius, offset] :
             {std::pair(7.2, -0.040), std::pair(9.6, -0.026), std::pair(9.6, 0.026), std::pair(7.2, 0.040)}) {
            const auto point = onCircle(centre, radius, turn + offset);
            if (path.elementCount() == 0)
                path.moveTo(point);
            else
                path.lineTo(point);
        }
    }
    path.closeSubpath();
    path.addEllipse(centre, 3.2, 3.2);
    return path;
}

QPainterPath cross(QPointF centre, double reach) {
    return lines({{centre + QPointF(-reach, -reach), centre + QPointF(reach, reach)},
                  {centre + QPointF(-reach, reach), centre + QPointF(reach, -reach)}});
}

QPainterPath crossedWindow() {
    QPainterPath path;
    path.addRoundedRect(QRectF(3, 3, 18, 18), 4.5, 4.5);
    path.addPath(cross({12, 12}, 3.6));
    return path;
}

QPainterPath book() {
    QPainterPath path;
    path.moveTo(19, 17.5);
    path.lineTo(19, 2.8);
    path.lineTo(7.5, 2.8);
    path.quadTo(5, 2.8, 5, 5.3);
    path.lineTo(5, 18.8);
    path.quadTo(5, 21.2, 7.5, 21.2);
    path.lineTo(19, 21.2);
    path.moveTo(5.2, 18.8);
    path.quadTo(5.4, 17.5, 7.5, 17.5);
    path.lineTo(19, 17.5);
    // A letter on its cover.
    path.moveTo(9.2, 13.4);
    path.lineTo(12, 6.6);
    path.lineTo(14.8, 13.4);
    path.addPath(lines({{{10.2, 11}, {13.8, 11}}}));
    return path;
}

QPainterPath addedText() {
    auto path = lines(
        {{{3.5, 5}, {20.5, 5}}, {{3.5, 10}, {20.5, 10}}, {{3.5, 15}, {11, 15}}, {{3.5, 20}, {8.5, 20}}});
    path.addPath(lines({{{17, 13.5}, {17, 21.5}}, {{13, 17.5}, {21, 17.5}}}));
    return path;
}

QPainterPath lockedShield() {
    QPainterPath path;
    path.moveTo(12, 2.2);
    path.lineTo(20, 5);
    path.lineTo(20, 11.5);
    path.cubicTo(20, 16.5, 16.5, 20, 12, 22);
    path.cubicTo(7.5, 20, 4, 16.5, 4, 11.5);
    path.lineTo(4, 5);
    path.closeSubpath();
    path.addRoundedRect(QRectF(8.6, 10.8, 6.8, 5.4), 1, 1);
    path.moveTo(9.9, 10.8);
    path.lineTo(9.9, 9.2);
    path.arcTo(QRectF(9.9, 7.1, 4.2, 4.2), 180, -180);
    path.lineTo(14.1, 10.8);
    return path;
}

QPainterPath tools() {
    // A wrench from the top left, a screwdriver from the top right.
    QPainterPath path;
    path.moveTo(6.8, 3.0);
    path.cubicTo(9.8, 2.6, 11.6, 5.6, 10.4, 8.3);
    path.lineTo(20.4, 18.3);
    path.cubicTo(21.6, 19.7, 19.7, 21.6, 18.3, 20.4);
    path.lineTo(8.3, 10.4);
    path.cubicTo(5.6, 11.6, 2.6, 9.8, 3.0, 6.8);
    path.lineTo(5.5, 9.1);
    path.lineTo(8.2, 8.2);
    path.lineTo(9.1, 5.5);
    path.closeSubpath();
    path.addPath(lines({{{21, 3}, {19.2, 6.2}}, {{19.2, 6.2}, {14.6, 10.6}}, {{9.6, 14.4}, {5, 19}}}));
    path.addPath(lines({{{8.2, 13.2}, {10.9, 15.9}}, {{3.6, 17.8}, {6.3, 20.5}}}));
    path.addPath(lines({{{8.2, 13.2}, {3.6, 17.8}}, {{10.9, 15.9}, {6.3, 20.5}}}));
    return path;
}

QPainterPath bug() {
    QPainterPath path;
    path.addEllipse(QRectF(6.5, 8, 11, 13.4));
    path.addPath(lines({{{12, 8.2}, {12, 21.2}}, {{6.8, 14.7}, {3, 14.7}}, {{17.2, 14.7}, {21, 14.7}}}));
    path.addPath(lines({{{7.6, 11.2}, {4, 8.8}}, {{16.4, 11.2}, {20, 8.8}}}));
    path.addPath(lines({{{7.6, 18.4}, {4.2, 20.8}}, {{16.4, 18.4}, {19.8, 20.8}}}));
    path.moveTo(8.4, 8.8);
    path.arcTo(QRectF(8.2, 4.4, 7.6, 7), 165, -150);
    path.addPath(lines({{{9.8, 5}, {8.4, 2.8}}, {{14.2, 5}, {15.6, 2.8}}}));
    return path;
}

QPainterPath tick() {
    QPainterPath path;
    path.moveTo(7.4, 12.4);
    path.lineTo(10.8, 15.8);
    path.lineTo(16.8, 8.6);
    return path;
}

QPainterPath lockWithTriangle() {
    QPainterPath path;
    path.moveTo(11, 21);
    path.lineTo(6.4, 21);
    path.quadTo(4.2, 21, 4.2, 18.8);
    path.lineTo(4.2, 12.4);
    path.quadTo(4.2, 10.2, 6.4, 10.2);
    path.lineTo(15.4, 10.2);
    path.quadTo(16.8, 10.2, 17.4, 11.4);
    path.moveTo(6.9, 10.2);
    path.lineTo(6.9, 7);
    path.arcTo(QRectF(6.9, 3, 8, 8), 180, -180);
    path.lineTo(14.9, 10.2);
    path.moveTo(17, 13.6);
    path.lineTo(21.6, 21.4);
    path.lineTo(12.4, 21.4);
    path.closeSubpath();
    path.addPath(lines({{{17, 16.4}, {17, 18.2}}, {{17, 19.7}, {17, 19.75}}}));
    return path;
}

/// A filled disc with a drawing cut out of it.
void drawDisc(QPainter& painter, const QPainterPath& cut, const QColor& color) {
    QPainterPath disc;
    disc.addEllipse(QPointF(12, 12), 10, 10);
    QPainterPathStroker stroker(QPen(Qt::black, 2.2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.fillPath(disc.subtracted(stroker.createStroke(cut)), color);
}

QPainterPath outline(Symbol symbol) {
    switch (symbol) {
    case Symbol::general:
        return gear();
    case Symbol::exclusions:
        return crossedWindow();
    case Symbol::library:
        return book();
    case Symbol::replacements:
        return addedText();
    case Symbol::permissions:
        return lockedShield();
    case Symbol::advanced:
        return tools();
    case Symbol::debug:
        return bug();
    case Symbol::warning:
        return lockWithTriangle();
    case Symbol::granted:
    case Symbol::notGranted:
        break;
    }
    return {};
}

} // namespace

void drawSymbol(QPainter& painter, Symbol symbol, const QRectF& place, const QColor& color) {
    const double size = std::min(place.width(), place.height());
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(place.center() - QPointF(size, size) / 2);
    painter.scale(size / side, size / side);
    if (symbol == Symbol::granted)
        drawDisc(painter, tick(), color);
    else if (symbol == Symbol::notGranted)
        drawDisc(painter, cross({12, 12}, 3.8), color);
    else
        painter.strokePath(outline(symbol),
                           QPen(color, strokeWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.restore();
}

SymbolView::SymbolView(Symbol symbol, int size, QWidget* parent)
    : QWidget(parent)
    , symbol_(symbol)
    , size_(size) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void SymbolView::setSymbol(Symbol symbol) {
    symbol_ = symbol;
    update();
}

void SymbolView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    drawSymbol(painter, symbol_, rect(), color());
}

QColor SymbolView::color() const {
    switch (symbol_) {
    case Symbol::granted:
        return goodColor(palette());
    case Symbol::notGranted:
    case Symbol::warning:
        return badColor(palette());
    default:
        return palette().color(QPalette::WindowText);
    }
}

} // namespace glyma::qt
