#include "backdrop.h"

#include <QFontMetricsF>
#include <QGuiApplication>
#include <QLinearGradient>
#include <QPainter>
#include <QScreen>

#include <array>

namespace glyma::gallery {

namespace {

constexpr QRectF editorArea(60, 44, 640, 640);
constexpr double titleBarHeight = 42;
constexpr double lineHeight = 30;
constexpr double pageMargin = 48;
constexpr int textSize = 16;
constexpr int writtenLine = 3;

const std::array<QString, 18> lines = {
    QStringLiteral("Notes from the garden"),
    QString(),
    QStringLiteral("The basil has come back after the cold week. Picked"),
    QStringLiteral("the first tomatoes this morning "),
    QString(),
    QStringLiteral("For Saturday: bread, olives, the good mozzarella, and two"),
    QStringLiteral("chairs from the cellar. Ada brings the lemonade and her"),
    QStringLiteral("brother; Jonas may come later, after the rehearsal. If it"),
    QStringLiteral("rains we move everything into the kitchen and open the"),
    QStringLiteral("windows, as last year."),
    QString(),
    QStringLiteral("Still to do"),
    QStringLiteral("–  ask the neighbours about the long table"),
    QStringLiteral("–  find the string of lights"),
    QStringLiteral("–  water the beans in the evening, not at noon"),
    QStringLiteral("–  write down how much sugar went into the jam"),
    QStringLiteral("–  send the photographs to grandmother"),
    QString(),
};

} // namespace

Backdrop::Backdrop(bool isDark, QString typed)
    : QWidget(nullptr, Qt::FramelessWindowHint | Qt::BypassWindowManagerHint)
    , isDark_(isDark)
    , typed_(std::move(typed)) {
    setGeometry(QGuiApplication::primaryScreen()->geometry());
}

QFont Backdrop::textFont() const {
    auto font = QGuiApplication::font();
    font.setPixelSize(textSize);
    return font;
}

QRect Backdrop::caret() const {
    const double left = editorArea.left() + pageMargin +
                        QFontMetricsF(textFont()).horizontalAdvance(lines[writtenLine] + typed_);
    const double top = editorArea.top() + titleBarHeight + 34 + writtenLine * lineHeight;
    return QRectF(left, top + 4, 2, lineHeight - 8).toRect();
}

void Backdrop::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QLinearGradient sky(rect().topLeft(), rect().bottomRight());
    sky.setColorAt(0, isDark_ ? QColor(34, 40, 74) : QColor(151, 196, 240));
    sky.setColorAt(0.55, isDark_ ? QColor(74, 46, 98) : QColor(196, 190, 240));
    sky.setColorAt(1, isDark_ ? QColor(28, 60, 84) : QColor(250, 206, 190));
    painter.fillRect(rect(), sky);
    paintEditor(painter, editorArea);
}

void Backdrop::paintEditor(QPainter& painter, const QRectF& window) const {
    painter.setPen(Qt::NoPen);
    for (int spread = 18; spread > 0; spread -= 2) {
        painter.setBrush(QColor(0, 0, 0, 6));
        painter.drawRoundedRect(window.adjusted(-spread, -spread + 8, spread, spread + 8), 12 + spread,
                                12 + spread);
    }
    painter.setBrush(isDark_ ? QColor(30, 30, 33) : QColor(255, 255, 255));
    painter.drawRoundedRect(window, 12, 12);
    painter.setBrush(isDark_ ? QColor(46, 46, 50) : QColor(240, 240, 242));
    painter.setClipRect(QRectF(window.left(), window.top(), window.width(), titleBarHeight));
    painter.drawRoundedRect(window, 12, 12);
    painter.setClipping(false);
    const auto muted = isDark_ ? QColor(160, 160, 168) : QColor(110, 110, 118);
    auto font = textFont();
    font.setPixelSize(13);
    font.setWeight(QFont::DemiBold);
    painter.setFont(font);
    painter.setPen(muted);
    painter.drawText(QRectF(window.left(), window.top(), window.width(), titleBarHeight), Qt::AlignCenter,
                     QStringLiteral("garden.md"));
    painter.setPen(QPen(muted, 1.6, Qt::SolidLine, Qt::RoundCap));
    const QPointF close(window.right() - 24, window.top() + titleBarHeight / 2);
    painter.drawLine(close + QPointF(-4, -4), close + QPointF(4, 4));
    painter.drawLine(close + QPointF(-4, 4), close + QPointF(4, -4));
    paintText(painter, window.adjusted(pageMargin, titleBarHeight + 34, -pageMargin, 0));
}

void Backdrop::paintText(QPainter& painter, const QRectF& page) const {
    for (std::size_t index = 0; index < lines.size(); ++index) {
        auto font = textFont();
        if (index == 0 || index == 11)
            font.setWeight(QFont::Bold);
        painter.setFont(font);
        painter.setPen(isDark_ ? QColor(222, 222, 226) : QColor(40, 40, 46));
        const auto text = index == writtenLine ? lines[index] + typed_ : lines[index];
        painter.drawText(QRectF(page.left(), page.top() + static_cast<double>(index) * lineHeight,
                                page.width(), lineHeight),
                         Qt::AlignLeft | Qt::AlignVCenter, text);
    }
    painter.fillRect(caret(), isDark_ ? Qt::white : Qt::black);
}

} // namespace glyma::gallery
