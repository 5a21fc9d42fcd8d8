#include "picker/qt/row_painter.h"

#include "picker/qt/picker_layout.h"

#include <QFontMetricsF>
#include <QGuiApplication>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace glyma::qt {

namespace {

constexpr int nameSize = 13;
constexpr int keywordSize = 11;
constexpr int rankingSize = 9;
constexpr double keywordGap = 6;
/// The part of the line that a matched keyword may claim from a long name.
constexpr double keywordShare = 0.4;

QString qString(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QFont sized(int pixels, QFont::Weight weight) {
    auto font = QGuiApplication::font();
    font.setPixelSize(pixels);
    font.setWeight(weight);
    return font;
}

void drawElided(QPainter& painter, const QRectF& line, const QFont& font, const QColor& color,
                const QString& text) {
    const auto elided = QFontMetricsF(font).elidedText(text, Qt::ElideRight, line.width());
    painter.setFont(font);
    painter.setPen(color);
    painter.drawText(line, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, elided);
}

/// A sheet with three lines of text on it.
void drawSnippetIcon(QPainter& painter, const QRectF& box, const Theme& theme) {
    const QRectF sheet(box.center().x() - 9, box.center().y() - 11, 18, 22);
    painter.setPen(QPen(theme.text.tertiary, 1.25));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(sheet, 4, 4);
    painter.setPen(QPen(theme.accent, 1.5, Qt::SolidLine, Qt::RoundCap));
    for (const auto& [top, length] : {std::pair(6.5, 9.0), std::pair(11.0, 9.0), std::pair(15.5, 5.0)})
        painter.drawLine(QPointF(sheet.left() + 4.5, sheet.top() + top),
                         QPointF(sheet.left() + 4.5 + length, sheet.top() + top));
}

} // namespace

RowPainter::RowPainter(Glyphs& glyphs)
    : glyphs_(glyphs) {
    refreshFonts();
}

void RowPainter::refreshFonts() {
    nameFont_ = sized(nameSize, QFont::DemiBold);
    emphasisFont_ = sized(nameSize, QFont::Bold);
    keywordFont_ = sized(keywordSize, QFont::Normal);
    rankingFont_ = sized(rankingSize, QFont::Normal);
}

QRectF RowPainter::iconBox(const QRectF& row) {
    return {row.left() + layout::contentInset, row.top(), layout::iconColumn, row.height()};
}

void RowPainter::paint(QPainter& painter, const QRectF& row, const RowContent& content, const RowState& state,
                       const Theme& theme) {
    if (state.isSelected || state.isHovered) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(state.isSelected ? theme.selection : theme.hover);
        painter.drawRoundedRect(row, layout::rowRadius, layout::rowRadius);
    }
    const auto& colors = state.isSelected ? theme.selectedText : theme.text;
    const auto icon = iconBox(row);
    paintIcon(painter, icon.adjusted(0, 6, 0, -6), content, theme);

    struct Line {
        double height;
        bool isShown;
    };
    const Line first{QFontMetricsF(nameFont_).height(), true};
    const Line second{QFontMetricsF(keywordFont_).height(), !content.detail.empty()};
    const Line third{QFontMetricsF(rankingFont_).height(), !content.ranking.empty()};
    constexpr double spacing = 1;
    double total = -spacing;
    for (const auto& line : {first, second, third})
        total += line.isShown ? line.height + spacing : 0;

    const double left = icon.right() + layout::iconGap;
    const double width = row.right() - layout::contentInset - left;
    double top = std::round(row.center().y() - total / 2);
    const auto next = [&](const Line& line) {
        const QRectF area(left, top, width, line.height);
        top += line.height + spacing;
        return area;
    };
    paintFirstLine(painter, next(first), content, colors);
    if (second.isShown)
        drawElided(painter, next(second), keywordFont_, colors.secondary, qString(content.detail));
    if (third.isShown)
        drawElided(painter, next(third), rankingFont_, colors.ranking, qString(content.ranking));
}

void RowPainter::paintIcon(QPainter& painter, const QRectF& box, const RowContent& content,
                           const Theme& theme) {
    if (content.iconKind == RowContent::Icon::snippet)
        drawSnippetIcon(painter, box, theme);
    else
        glyphs_.draw(painter, box, content.icon, layout::iconSize, theme.text.primary);
}

void RowPainter::paintFirstLine(QPainter& painter, const QRectF& line, const RowContent& content,
                                const TextColors& colors) const {
    auto nameLine = line;
    if (!content.keyword.empty()) {
        const double wanted =
            QFontMetricsF(keywordFont_).horizontalAdvance(qString(content.keyword)) + keywordGap;
        nameLine.setWidth(line.width() - std::min(std::ceil(wanted), line.width() * keywordShare));
    }
    const double used = paintName(painter, nameLine, content.name, colors);
    if (!content.keyword.empty())
        drawElided(painter, line.adjusted(used + keywordGap, 0, 0, 0), keywordFont_, colors.tertiary,
                   qString(content.keyword));
}

/// \return the width taken.
double RowPainter::paintName(QPainter& painter, QRectF line, const std::vector<TextRun>& name,
                             const TextColors& colors) const {
    const double start = line.left();
    for (const auto& run : name) {
        const auto& font = run.isEmphasised ? emphasisFont_ : nameFont_;
        const QFontMetricsF metrics(font);
        const auto text = qString(run.text);
        const double width = metrics.horizontalAdvance(text);
        const auto& color = run.isEmphasised ? colors.emphasis : colors.primary;
        if (width > line.width()) {
            drawElided(painter, line, font, color, text);
            return line.left() - start +
                   metrics.horizontalAdvance(metrics.elidedText(text, Qt::ElideRight, line.width()));
        }
        painter.setFont(font);
        painter.setPen(color);
        painter.drawText(line, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, text);
        line.setLeft(line.left() + width);
    }
    return line.left() - start;
}

} // namespace glyma::qt
