#include "picker/qt/shadow.h"

#include <QImage>
#include <QPainter>
#include <qdrawutil.h>

#include <algorithm>
#include <cmath>

namespace glyma::qt {

namespace {

constexpr double offsetDown = 9;
constexpr double wideBlur = 11;
constexpr double narrowBlur = 1.6;
/// How far along an edge, from where its corner ends, the corner is still seen in the shadow.
constexpr int cornerInfluence = 24;

int tileBorder(double radius) {
    return Shadow::margin + static_cast<int>(std::ceil(radius)) + cornerInfluence;
}

/// Signed distance from a rounded square of the given half side, negative inside.
double distanceFromPanel(double x, double y, double half, double radius) {
    const double dx = std::max(std::abs(x) - (half - radius), 0.0);
    const double dy = std::max(std::abs(y) - (half - radius), 0.0);
    return std::hypot(dx, dy) - radius;
}

/// A blurred edge: 1 deep inside, 0 far outside.
double coverage(double distance, double sigma) {
    return 0.5 * std::erfc(distance / (sigma * std::sqrt(2.0)));
}

/// A square panel just large enough for its corners, with the shadow around it; the middle stretches.
QPixmap shadowTile(double radius, double strength, double scale) {
    const double half = tileBorder(radius) - Shadow::margin + 1;
    const int side = static_cast<int>(std::ceil((half + Shadow::margin) * 2 * scale));
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    for (int row = 0; row < side; ++row) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(row));
        for (int column = 0; column < side; ++column) {
            const double x = (column + 0.5 - side / 2.0) / scale;
            const double y = (row + 0.5 - side / 2.0) / scale;
            const double wide = coverage(distanceFromPanel(x, y - offsetDown, half - 3, radius), wideBlur);
            const double narrow = coverage(distanceFromPanel(x, y - 0.8, half, radius), narrowBlur);
            const double alpha = std::min(1.0, strength * wide + strength * 0.45 * narrow);
            line[column] = qRgba(0, 0, 0, static_cast<int>(std::lround(alpha * 255)));
        }
    }
    image.setDevicePixelRatio(scale);
    return QPixmap::fromImage(image);
}

} // namespace

void Shadow::paint(QPainter& painter, const QRectF& panel, double radius, double strength) {
    const Key key{radius, strength, painter.device()->devicePixelRatioF()};
    if (!(key == key_)) {
        key_ = key;
        tile_ = shadowTile(radius, strength, key.scale);
    }
    const int border = tileBorder(radius);
    const auto target = panel.adjusted(-margin, -margin, margin, margin).toAlignedRect();
    qDrawBorderPixmap(&painter, target, QMargins(border, border, border, border), tile_);
}

} // namespace glyma::qt
