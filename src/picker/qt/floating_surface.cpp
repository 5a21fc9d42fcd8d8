#include "picker/qt/floating_surface.h"

#include <QPaintEvent>
#include <QPainter>

#include <cmath>

namespace glyma::qt {

namespace {

constexpr double strokeWidth = 0.5;

QRect deviceRectIn(const QWidget& widget, const QRect& logical) {
    const double scale = widget.devicePixelRatioF();
    return QRectF(logical.x() * scale, logical.y() * scale, logical.width() * scale, logical.height() * scale)
        .toRect();
}

} // namespace

FloatingSurface::FloatingSurface(const Appearance& appearance, const CompositorWatch& compositor,
                                 double radius, Keyboard keyboard)
    : QWidget(nullptr, Qt::ToolTip | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                           Qt::BypassWindowManagerHint | Qt::NoDropShadowWindowHint)
    , appearance_(appearance)
    , compositor_(compositor)
    , radius_(radius) {
    setWindowFlag(Qt::WindowDoesNotAcceptFocus, keyboard == Keyboard::never);
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_QuitOnClose, false);
    // Common compositor settings make tooltips and menus see-through, or fade them in.
    setAttribute(Qt::WA_X11NetWmWindowTypeCombo);
    setFocusPolicy(Qt::NoFocus);
}

void FloatingSurface::setPanel(const QRect& panel, const QRect& reserve) {
    panel_ = panel;
    reserve_ = reserve;
    constexpr int margin = Shadow::margin;
    setGeometry(compositor_.isRunning() ? reserve.adjusted(-margin, -margin, margin, margin) : panel);
    updateShape();
    update();
}

QRect FloatingSurface::panel() const {
    return panel_.translated(-geometry().topLeft());
}

void FloatingSurface::refreshSurface() {
    setPanel(panel_, reserve_);
}

void FloatingSurface::updateShape() {
    if (!internalWinId())
        return;
    const double scale = devicePixelRatioF();
    const WindowShape shape{deviceRectIn(*this, rect()).size(), deviceRectIn(*this, panel()), radius_ * scale,
                            compositor_.isRunning()};
    if (shape == shape_)
        return;
    shape_ = shape;
    applyShape(*this, shape);
}

void FloatingSurface::showEvent(QShowEvent* event) {
    updateShape();
    QWidget::showEvent(event);
}

void FloatingSurface::resizeEvent(QResizeEvent* event) {
    updateShape();
    QWidget::resizeEvent(event);
}

void FloatingSurface::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    painter.setClipRegion(event->region());
    painter.setRenderHint(QPainter::Antialiasing);
    paintBackground(painter);
    painter.translate(panel().topLeft());
    paintPanel(painter);
}

void FloatingSurface::paintBackground(QPainter& painter) {
    const QRectF area = panel();
    painter.setPen(Qt::NoPen);
    if (!compositor_.isRunning()) {
        painter.fillRect(area, theme().opaquePanel);
    } else {
        shadow_.paint(painter, area, radius_, theme().shadowStrength);
        // The shadow must not shine through the panel.
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        painter.setBrush(compositor_.canBlur() ? theme().blurredPanel : theme().panel);
        painter.drawRoundedRect(area, radius_, radius_);
        painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    }
    const double half = strokeWidth / 2;
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(theme().stroke, compositor_.isRunning() ? strokeWidth : 1));
    painter.drawRoundedRect(area.adjusted(half, half, -half, -half), radius_ - half, radius_ - half);
}

} // namespace glyma::qt
