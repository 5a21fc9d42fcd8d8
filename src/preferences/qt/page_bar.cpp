#include "preferences/qt/page_bar.h"

#include "preferences/qt/page_bar_accessibility.h"
#include "preferences/qt/window_palette.h"

#include <QHoverEvent>
#include <QPainter>
#include <QStyle>

namespace glyma::qt {

namespace {

constexpr int symbolSize = 24;
constexpr int padding = 9;
constexpr int between = 4;
constexpr int leastWidth = 64;
constexpr double cornerRadius = 7;

} // namespace

PageBar::PageBar(QWidget* parent)
    : QTabBar(parent) {
    installPageBarAccessibility();
    setDrawBase(false);
    setExpanding(false);
    setUsesScrollButtons(false);
    setElideMode(Qt::ElideNone);
    setAttribute(Qt::WA_Hover);
    auto smaller = font();
    smaller.setPointSizeF(smaller.pointSizeF() * 0.92);
    setFont(smaller);
}

void PageBar::insertPage(int index, Symbol symbol, const QString& title) {
    symbols_.insert(symbols_.begin() + index, symbol);
    insertTab(index, title);
}

void PageBar::removePage(int index) {
    symbols_.erase(symbols_.begin() + index);
    removeTab(index);
}

QSize PageBar::tabSizeHint(int index) const {
    const auto text = fontMetrics().size(Qt::TextShowMnemonic, tabText(index));
    return {std::max(leastWidth, text.width() + 2 * padding),
            symbolSize + between + text.height() + 2 * padding};
}

bool PageBar::event(QEvent* event) {
    if (event->type() == QEvent::HoverMove || event->type() == QEvent::HoverEnter)
        hovered_ = tabAt(static_cast<QHoverEvent*>(event)->position().toPoint());
    else if (event->type() == QEvent::HoverLeave)
        hovered_ = -1;
    return QTabBar::event(event);
}

void PageBar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    for (int index = 0; index < count(); ++index)
        paintTab(painter, index);
}

void PageBar::paintTab(QPainter& painter, int index) {
    const bool isCurrent = index == currentIndex();
    const auto place = tabRect(index).adjusted(1, 2, -1, -2);
    auto ground = palette().color(isCurrent ? QPalette::Highlight : QPalette::WindowText);
    ground.setAlphaF(isCurrent ? 0.16F : index == hovered_ ? 0.06F : 0.0F);
    painter.setBrush(ground);
    painter.setPen(isCurrent && hasFocus() ? QPen(palette().color(QPalette::Link), 1.5) : QPen(Qt::NoPen));
    painter.drawRoundedRect(QRectF(place).adjusted(0.75, 0.75, -0.75, -0.75), cornerRadius, cornerRadius);

    const auto color = isCurrent ? accentTextColor(palette()) : palette().color(QPalette::WindowText);
    const QRect symbol(place.left(), place.top() + padding - 2, place.width(), symbolSize);
    drawSymbol(painter, symbols_[static_cast<std::size_t>(index)], symbol, color);
    const auto shown = style()->styleHint(QStyle::SH_UnderlineShortcut, nullptr, this) ? Qt::TextShowMnemonic
                                                                                       : Qt::TextHideMnemonic;
    painter.setPen(color);
    painter.drawText(place.adjusted(0, padding + symbolSize + between - 4, 0, 0),
                     Qt::AlignHCenter | Qt::AlignTop | shown, tabText(index));
}

} // namespace glyma::qt
