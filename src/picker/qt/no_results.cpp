#include "picker/qt/no_results.h"

#include "unicode/text.h"

#include <QFontMetricsF>
#include <QGuiApplication>
#include <QPainter>
#include <QRandomGenerator>

#include <vector>

namespace glyma::qt {

namespace {

constexpr double emoticonSize = 13;
constexpr int textSize = 11;
constexpr double spacing = 3;

/// A stretch of the emoticon that one font draws.
struct Piece {
    QString text;
    QFont font;
};

std::vector<Piece> pieces(std::string_view text, Glyphs& glyphs) {
    std::vector<Piece> result;
    for (const auto cluster : unicode::graphemes(text)) {
        const auto piece = QString::fromUtf8(cluster.data(), static_cast<qsizetype>(cluster.size()));
        const auto font = glyphs.font(cluster, emoticonSize);
        if (!result.empty() && result.back().font == font)
            result.back().text += piece;
        else
            result.push_back({piece, font});
    }
    return result;
}

} // namespace

void NoResultsView::appear() {
    std::vector<std::string_view> drawable;
    for (const auto emoticon : noResultsEmoticons)
        if (glyphs_.canDraw(emoticon))
            drawable.push_back(emoticon);
    if (!drawable.empty())
        emoticon_ = drawable[QRandomGenerator::global()->bounded(static_cast<quint32>(drawable.size()))];
}

void NoResultsView::paint(QPainter& painter, const QRectF& area, const Theme& theme) {
    auto textFont = QGuiApplication::font();
    textFont.setPixelSize(textSize);
    const double textHeight = QFontMetricsF(textFont).height();
    const double emoticonHeight = emoticonSize * 1.4;
    const double top = area.center().y() - (emoticonHeight + spacing + textHeight) / 2;

    const auto parts = pieces(emoticon_, glyphs_);
    double width = 0;
    for (const auto& part : parts)
        width += QFontMetricsF(part.font).horizontalAdvance(part.text);
    painter.setPen(theme.text.secondary);
    QPointF pen(area.center().x() - width / 2, top + emoticonSize);
    for (const auto& part : parts) {
        painter.setFont(part.font);
        painter.drawText(pen, part.text);
        pen.rx() += QFontMetricsF(part.font).horizontalAdvance(part.text);
    }
    painter.setFont(textFont);
    painter.drawText(QRectF(area.left(), top + emoticonHeight + spacing, area.width(), textHeight),
                     Qt::AlignCenter, tr("Nothing found"));
}

} // namespace glyma::qt
