#include "charinfo/qt/soft_button.h"

#include <QPainter>

#include <algorithm>

namespace glyma::qt {

namespace {

// Logical pixels.
constexpr double radius = 6;
constexpr int sidePadding = 12;
constexpr int endPadding = 5;

constexpr double restingOpacity = 0.08;
constexpr double hoveredOpacity = 0.14;
constexpr double pressedOpacity = 0.22;

QColor withAlpha(QColor color, double alpha) {
    color.setAlphaF(static_cast<float>(alpha));
    return color;
}

} // namespace

SoftButton::SoftButton(const QString& text, Ground ground, QWidget* parent)
    : QPushButton(text, parent)
    , ground_(ground) {
    setAutoDefault(false);
    setSizePolicy(QSizePolicy::Minimum, QSizePolicy::Fixed);
}

QSize SoftButton::sizeHint() const {
    const auto metrics = fontMetrics();
    const int height = metrics.height() + 2 * endPadding;
    return {std::max(height, metrics.horizontalAdvance(text()) + 2 * sidePadding), height};
}

void SoftButton::enterEvent(QEnterEvent* event) {
    QPushButton::enterEvent(event);
    update();
}

void SoftButton::leaveEvent(QEvent* event) {
    QPushButton::leaveEvent(event);
    update();
}

void SoftButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const auto color = palette().color(QPalette::WindowText);
    const double opacity = isDown()                    ? pressedOpacity
                           : underMouse()              ? hoveredOpacity
                           : ground_ == Ground::always ? restingOpacity
                                                       : 0;
    painter.setBrush(withAlpha(color, opacity));
    painter.setPen(Qt::NoPen);
    painter.drawRoundedRect(rect(), radius, radius);
    if (hasFocus() && window()->isActiveWindow()) {
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
        painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), radius - 1, radius - 1);
    }
    painter.setPen(color);
    painter.drawText(rect(), Qt::AlignCenter | Qt::TextShowMnemonic, text());
}

} // namespace glyma::qt
