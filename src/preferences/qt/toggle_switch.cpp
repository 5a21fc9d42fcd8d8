#include "preferences/qt/toggle_switch.h"

#include "picker/qt/theme.h"

#include <QPainter>
#include <QStyle>

namespace glyma::qt {

namespace {

constexpr QSizeF trackSize(38, 22);
/// Between the track and the ring that shows the focus, and the ring itself.
constexpr double ringGap = 1.5;
constexpr double ringWidth = 1.5;

QColor trackColor(const QPalette& palette, bool isOn) {
    if (isOn)
        return palette.color(QPalette::Highlight);
    auto shade = palette.color(QPalette::WindowText);
    shade.setAlphaF(0.42F);
    return blended(shade, palette.color(QPalette::Window));
}

} // namespace

ToggleSwitch::ToggleSwitch(QWidget* parent)
    : QCheckBox(parent) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setAttribute(Qt::WA_Hover);
}

QSize ToggleSwitch::sizeHint() const {
    constexpr double ring = 2 * (ringGap + ringWidth);
    return (trackSize + QSizeF(ring, ring)).toSize();
}

void ToggleSwitch::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (!isEnabled())
        painter.setOpacity(0.45);
    QRectF track({}, trackSize);
    track.moveCenter(QRectF(rect()).center());
    const double radius = track.height() / 2;
    painter.setPen(Qt::NoPen);
    painter.setBrush(trackColor(palette(), isChecked()));
    painter.drawRoundedRect(track, radius, radius);

    QRectF knob(0, 0, track.height() - 4, track.height() - 4);
    knob.moveCenter(track.center());
    const bool isAtRight = isChecked() != (layoutDirection() == Qt::RightToLeft);
    if (isAtRight)
        knob.moveRight(track.right() - 2);
    else
        knob.moveLeft(track.left() + 2);
    painter.setBrush(Qt::white);
    painter.drawEllipse(knob);

    if (hasFocus()) {
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(palette().color(QPalette::Link), ringWidth));
        constexpr double out = ringGap + ringWidth / 2;
        painter.drawRoundedRect(track.adjusted(-out, -out, out, out), radius + out, radius + out);
    }
}

} // namespace glyma::qt
