#include "picker/qt/picker_header.h"

#include "picker/qt/picker_layout.h"
#include "picker/qt/skin_tones.h"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>

namespace glyma::qt {

namespace {

// Logical pixels.
constexpr int echoSize = 14;
constexpr double toneSize = 16;
constexpr int buttonWidth = 44;
constexpr int buttonHeight = 28;
constexpr int progressSize = 12;
constexpr int progressPadding = 4;
constexpr int dotSize = 8;
constexpr int dotPadding = 5;
constexpr int inset = layout::rowInset + layout::contentInset;

int contentRight(int panelWidth, bool hasPollingDot) {
    return panelWidth - layout::contentInset - (hasPollingDot ? dotSize + 2 * dotPadding : 0);
}

void drawChevron(QPainter& painter, QPointF middle, const QColor& color) {
    QPainterPath path(middle + QPointF(-3.2, -1.6));
    path.lineTo(middle + QPointF(0, 1.8));
    path.lineTo(middle + QPointF(3.2, -1.6));
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(color, 1.4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(path);
}

} // namespace

PickerHeader::PickerHeader(Glyphs& glyphs)
    : glyphs_(glyphs) {
    refreshFonts();
}

void PickerHeader::refreshFonts() {
    echoFont_ = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    echoFont_.setPixelSize(echoSize);
    echoFont_.setWeight(QFont::Medium);
}

QRect PickerHeader::skinToneButton(int panelWidth, bool hasPollingDot) {
    return {contentRight(panelWidth, hasPollingDot) - buttonWidth,
            (layout::headerHeight - buttonHeight) / 2 + 1, buttonWidth, buttonHeight};
}

QRect PickerHeader::progress(int panelWidth, bool hasPollingDot) {
    const int left = skinToneButton(panelWidth, hasPollingDot).left() - progressPadding - progressSize;
    return {left, (layout::headerHeight - progressSize) / 2 + 1, progressSize, progressSize};
}

void PickerHeader::paint(QPainter& painter, int panelWidth, const HeaderState& state,
                         const Theme& theme) const {
    const bool hasDot = state.pollingDot.isValid();
    const QRectF progressArea = progress(panelWidth, hasDot);
    const QRectF echoArea(inset, 1, progressArea.left() - progressPadding - inset, layout::headerHeight);
    painter.setFont(echoFont_);
    painter.setPen(theme.text.secondary);
    painter.drawText(echoArea, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                     QFontMetricsF(echoFont_).elidedText(state.echo, Qt::ElideLeft, echoArea.width()));

    if (state.isBusy) {
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(theme.text.tertiary, 1.6, Qt::SolidLine, Qt::RoundCap));
        painter.drawArc(progressArea.adjusted(1, 1, -1, -1), -state.busyAngle * 16, 270 * 16);
    }
    paintButton(painter, skinToneButton(panelWidth, hasDot), state, theme);
    if (hasDot) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(state.pollingDot);
        painter.drawEllipse(QRectF(panelWidth - layout::contentInset - dotPadding - dotSize,
                                   (layout::headerHeight - dotSize) / 2.0 + 1, dotSize, dotSize));
    }
    painter.fillRect(QRectF(0, layout::headerHeight, panelWidth, layout::separatorHeight), theme.separator);
}

void PickerHeader::paintButton(QPainter& painter, const QRect& button, const HeaderState& state,
                               const Theme& theme) const {
    if (state.isButtonHovered) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(theme.hover);
        painter.drawRoundedRect(button, 8, 8);
    }
    const QRectF hand(button.left() + 4, button.top(), 22, button.height());
    glyphs_.draw(painter, hand, skinToneGlyph(skinTones[skinToneIndex(state.skinToneModifier)].modifier),
                 toneSize, theme.text.primary);
    drawChevron(painter, QPointF(hand.right() + 3 + 4.5, button.center().y() + 1), theme.text.secondary);
}

} // namespace glyma::qt
