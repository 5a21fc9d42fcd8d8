#pragma once

#include <QPixmap>
#include <QRectF>

class QPainter;

namespace glyma::qt {

/// The soft shadow of a rounded panel, computed once for each appearance and stretched to any size. Main
/// thread.
class Shadow {
public:
    /// How far it reaches beyond the panel on every side, logical pixels.
    static constexpr int margin = 36;

    /// \param panel  logical pixels.
    void paint(QPainter& painter, const QRectF& panel, double radius, double strength);

private:
    struct Key {
        double radius = 0;
        double strength = 0;
        double scale = 0;
        bool operator==(const Key&) const = default;
    };
    Key key_;
    QPixmap tile_;
};

} // namespace glyma::qt
