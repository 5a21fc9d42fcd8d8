#include "preferences/qt/exclusion_icons.h"

#include <QFileInfo>
#include <QPainter>

namespace glyma::qt {

namespace {

QIcon load(const std::string& icon) {
    const auto name = QString::fromStdString(icon);
    if (name.isEmpty())
        return {};
    if (name.startsWith(QLatin1Char('/')))
        return QFileInfo::exists(name) ? QIcon(name) : QIcon();
    if (QIcon::hasThemeIcon(name))
        return QIcon::fromTheme(name);
    // Where applications without a theme put theirs; not every Qt looks there.
    for (const auto* ending : {"", ".svg", ".png", ".xpm"})
        if (const auto file = QStringLiteral("/usr/share/pixmaps/") + name + QLatin1String(ending);
            QFileInfo(file).isFile())
            return QIcon(file);
    return {};
}

QPen linePen(const QColor& color) {
    return {color, 1.4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin};
}

void paintGeneric(QPainter& painter, const QRectF& box, const QColor& text) {
    const auto frame = box.adjusted(3, 3, -3, -3);
    auto fill = text;
    fill.setAlphaF(0.12f);
    painter.setBrush(fill);
    painter.setPen(linePen(text));
    painter.drawRoundedRect(frame, 5, 5);
    painter.drawLine(QPointF(frame.left(), frame.top() + 5.5), QPointF(frame.right(), frame.top() + 5.5));
}

} // namespace

void ApplicationIcons::paint(QPainter& painter, const QRect& box, const std::string& icon,
                             const QColor& text) {
    auto found = icons_.find(icon);
    if (found == icons_.end())
        found = icons_.emplace(icon, load(icon)).first;
    // A damaged picture file makes an icon that gives no pixmap.
    if (const auto pixmap = found->second.pixmap(box.size(), painter.device()->devicePixelRatioF());
        !pixmap.isNull()) {
        const auto size = pixmap.deviceIndependentSize();
        const QPointF corner = QRectF(box).center() - QPointF(size.width() / 2, size.height() / 2);
        painter.drawPixmap(corner.toPoint(), pixmap);
        return;
    }
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    paintGeneric(painter, box, text);
    painter.restore();
}

void paintGlobe(QPainter& painter, const QRect& box, const QColor& text) {
    const auto circle = QRectF(box).adjusted(3, 3, -3, -3);
    const auto center = circle.center();
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(linePen(text));
    painter.setBrush(Qt::NoBrush);
    painter.drawEllipse(circle);
    painter.drawEllipse(center, circle.width() * 0.22, circle.height() / 2);
    painter.drawLine(QPointF(circle.left(), center.y()), QPointF(circle.right(), center.y()));
    painter.restore();
}

} // namespace glyma::qt
