#include "app/desktop/status_icon.h"

#include "preferences/user_preferences.h"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QPainter>
#include <QPixmap>
#include <QSvgRenderer>

#include <algorithm>
#include <cmath>

/// Resources of a static library have to be asked for, outside of any namespace.
static void initSymbols() {
    Q_INIT_RESOURCE(symbols);
}

namespace glyma {

namespace {

QImage emptyImage(int size) {
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

QImage drawnSymbol(const std::string& symbol, int size, double turn) {
    initSymbols();
    auto image = emptyImage(size);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(size / 2.0, size / 2.0);
    painter.rotate(360 * turn);
    QSvgRenderer drawing(QStringLiteral(":/glyma/symbols/%1.svg").arg(QString::fromStdString(symbol)));
    drawing.render(&painter, QRectF(-size / 2.0, -size / 2.0, size, size));
    painter.end();
    // White is drawn to be cut out of black.
    for (int y = 0; y < size; ++y)
        for (auto *pixel = reinterpret_cast<QRgb*>(image.scanLine(y)), *end = pixel + size; pixel != end;
             ++pixel)
            *pixel = qRgba(0, 0, 0, qAlpha(*pixel) - qRed(*pixel));
    return image;
}

QFont triggerFont() {
    constexpr int pixelSize = 11;
    auto font = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    font.setBold(true);
    font.setPixelSize(pixelSize);
    return font;
}

/// A filled square with the trigger cut out of it, made on a square of 18 units.
QImage drawnTrigger(const QString& trigger, int size) {
    constexpr double side = 18, inset = 0.5, radius = 4;
    auto image = emptyImage(size);
    QPainter painter(&image);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    painter.scale(size / side, size / side);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::black);
    painter.drawRoundedRect(QRectF(inset, inset, side - 2 * inset, side - 2 * inset), radius, radius);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
    painter.setPen(Qt::black);
    painter.setFont(triggerFont());
    const QFontMetricsF metrics(painter.font());
    // The baseline lies half a capital letter below the middle.
    painter.drawText(
        QPointF((side - metrics.horizontalAdvance(trigger)) / 2, side / 2 + metrics.capHeight() / 2),
        trigger);
    return image;
}

QImage painted(const QImage& stencil, const QColor& color) {
    auto image = stencil;
    QPainter painter(&image);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), color);
    return image;
}

QPixmap onPanel(const QImage& stencil, bool isPanelDark) {
    const QColor ink = isPanelDark ? QColor(0xF4, 0xF4, 0xF4) : QColor(0x2E, 0x2E, 0x33);
    auto rim = isPanelDark ? QColor(Qt::black) : QColor(Qt::white);
    rim.setAlphaF(0.18F);
    const auto shadow = painted(stencil, rim);
    const double reach = std::max(1.0, stencil.width() / 22.0);
    auto image = emptyImage(stencil.width());
    QPainter painter(&image);
    constexpr int directions = 8;
    for (int step = 0; step < directions; ++step) {
        const double angle = 2 * M_PI * step / directions;
        painter.drawImage(QPointF(reach * std::cos(angle), reach * std::sin(angle)), shadow);
    }
    painter.drawImage(0, 0, painted(stencil, ink));
    painter.end();
    return QPixmap::fromImage(image);
}

QPixmap drawnTile(int size) {
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(size / 16.0, size / 16.0);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0x3B, 0x6F, 0xE0));
    painter.drawRoundedRect(QRectF(0.5, 0.5, 15, 15), 4, 4);
    painter.setBrush(Qt::white);
    painter.drawEllipse(QPointF(8, 5), 1.75, 1.75);
    painter.drawEllipse(QPointF(8, 11), 1.75, 1.75);
    return pixmap;
}

} // namespace

std::string statusSymbol(const Status& status) {
    if (status.isImporting)
        return "arrow.trianglehead.2.clockwise.rotate.90";
    if (status.permissionsNeeded)
        return "exclamationmark.triangle";
    if (status.secureInputBlocked)
        return "lock.trianglebadge.exclamationmark";
    const auto options = UserPreferences::menuBarIconOptions();
    const auto chosen = std::ranges::find(options, status.menuBarIcon, &MenuBarIconOption::value);
    return chosen == options.end() ? "" : std::string(chosen->symbol);
}

QImage statusStencil(const Status& status, int size, double turn) {
    const auto symbol = statusSymbol(status);
    return symbol.empty() ? drawnTrigger(QString::fromStdString(status.triggerCharacter), size)
                          : drawnSymbol(symbol, size, turn);
}

QIcon statusIcon(const Status& status, bool isPanelDark, double turn) {
    QIcon icon;
    for (const int size : {16, 22, 24, 32, 48, 64})
        icon.addPixmap(onPanel(statusStencil(status, size, turn), isPanelDark));
    return icon;
}

QIcon programIcon() {
    QIcon icon;
    for (const int size : {16, 22, 24, 32, 48, 64, 128})
        icon.addPixmap(drawnTile(size));
    return icon;
}

} // namespace glyma
