#include "picker/qt/skin_tone_menu.h"

#include "picker/qt/skin_tones.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QScreen>

#include <algorithm>
#include <utility>

namespace glyma::qt {

namespace {

// Logical pixels.
constexpr double radius = 12;
constexpr int width = 184;
constexpr int rowHeight = 32;
constexpr int padding = 5;
constexpr int anchorGap = 4;
constexpr int screenMargin = 4;
constexpr int textSize = 13;
constexpr double glyphSize = 16;

QRect rowRect(std::size_t index) {
    return {padding, padding + static_cast<int>(index) * rowHeight, width - 2 * padding, rowHeight};
}

/// Below the anchor, else above it, right edges aligned, on the screen.
QRect menuRect(const QRect& anchor) {
    constexpr int height = static_cast<int>(skinTones.size()) * rowHeight + 2 * padding;
    QRect rect(anchor.right() + 1 - width, anchor.bottom() + 1 + anchorGap, width, height);
    const auto* screen = QGuiApplication::screenAt(anchor.center());
    if (!screen)
        return rect;
    const auto area =
        screen->availableGeometry().adjusted(screenMargin, screenMargin, -screenMargin, -screenMargin);
    if (rect.bottom() > area.bottom())
        rect.moveBottom(anchor.top() - anchorGap);
    rect.moveTop(std::max(rect.top(), area.top()));
    rect.moveLeft(std::max(area.left(), std::min(rect.left(), area.right() + 1 - width)));
    return rect;
}

void drawCheckMark(QPainter& painter, const QRectF& row, const QColor& color) {
    const QPointF middle(row.right() - 18, row.center().y());
    QPainterPath path(middle + QPointF(-4.5, 0));
    path.lineTo(middle + QPointF(-1.3, 3.4));
    path.lineTo(middle + QPointF(4.8, -4));
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(color, 1.8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(path);
}

} // namespace

SkinToneMenu::SkinToneMenu(const Appearance& appearance, const CompositorWatch& compositor, Glyphs& glyphs)
    : FloatingSurface(appearance, compositor, radius)
    , glyphs_(glyphs) {
    setMouseTracking(true);
    setAccessibleName(tr("Skin tone"));
}

void SkinToneMenu::popUp(const QRect& anchor, const std::optional<std::string>& current, OnSelect onSelect,
                         std::function<void()> onClose) {
    current_ = skinToneIndex(current);
    hovered_.reset();
    wasMoved_ = false;
    onSelect_ = std::move(onSelect);
    onClose_ = std::move(onClose);
    const auto rect = menuRect(anchor);
    setPanel(rect, rect);
    show();
    raise();
    grabMouse();
}

void SkinToneMenu::dismiss() {
    hide();
}

void SkinToneMenu::hideEvent(QHideEvent* event) {
    releaseMouse();
    onSelect_ = nullptr;
    if (const auto onClose = std::exchange(onClose_, nullptr))
        onClose();
    FloatingSurface::hideEvent(event);
}

std::optional<std::size_t> SkinToneMenu::toneAt(QPoint inWindow) const {
    const auto point = inWindow - panel().topLeft();
    for (std::size_t index = 0; index < skinTones.size(); ++index)
        if (rowRect(index).contains(point))
            return index;
    return std::nullopt;
}

void SkinToneMenu::mouseMoveEvent(QMouseEvent* event) {
    wasMoved_ = true;
    if (std::exchange(hovered_, toneAt(event->pos())) != hovered_)
        update();
}

void SkinToneMenu::mousePressEvent(QMouseEvent* event) {
    wasMoved_ = true;
    if (!panel().contains(event->pos()))
        dismiss();
}

/// Also ends a press on the button that opened the menu, dragged to a tone, as menus do.
void SkinToneMenu::mouseReleaseEvent(QMouseEvent* event) {
    const auto tone = toneAt(event->pos());
    if (wasMoved_ && tone && event->button() == Qt::LeftButton)
        choose(*tone);
}

void SkinToneMenu::choose(std::size_t tone) {
    const auto modifier = skinTones[tone].modifier;
    const auto onSelect = std::exchange(onSelect_, nullptr);
    if (onSelect)
        onSelect(modifier.empty() ? std::nullopt : std::optional(std::string(modifier)));
    dismiss();
}

void SkinToneMenu::paintPanel(QPainter& painter) {
    auto font = QGuiApplication::font();
    font.setPixelSize(textSize);
    font.setWeight(QFont::Medium);
    for (std::size_t index = 0; index < skinTones.size(); ++index) {
        const QRectF row = rowRect(index);
        if (hovered_ == index) {
            painter.setPen(Qt::NoPen);
            painter.setBrush(theme().selection);
            painter.drawRoundedRect(row, radius - padding, radius - padding);
        }
        glyphs_.draw(painter, QRectF(row.left() + 6, row.top(), 26, row.height()),
                     skinToneGlyph(skinTones[index].modifier), glyphSize, theme().text.primary);
        painter.setFont(font);
        painter.setPen(theme().text.primary);
        painter.drawText(row.adjusted(42, 0, -30, 0), Qt::AlignLeft | Qt::AlignVCenter,
                         tr(skinTones[index].name));
        if (index == current_)
            drawCheckMark(painter, row, theme().text.emphasis);
    }
}

} // namespace glyma::qt
