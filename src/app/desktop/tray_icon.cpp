#include "app/desktop/tray_icon.h"

#include <QPainter>
#include <QPixmap>

namespace glyma {

namespace {

QPixmap drawnIcon(int size) {
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

QIcon programIcon() {
    QIcon icon;
    for (const int size : {16, 22, 24, 32, 48, 64, 128})
        icon.addPixmap(drawnIcon(size));
    return icon;
}

TrayIcon::TrayIcon(std::function<void()> onQuit)
    : problem_(menu_.addAction(QString()))
    , icon_(programIcon()) {
    problem_->setEnabled(false);
    menu_.addSeparator();
    QObject::connect(menu_.addAction(QStringLiteral("Quit Glyma")), &QAction::triggered, &menu_,
                     std::move(onQuit));
    icon_.setContextMenu(&menu_);
    setProblem({});
    icon_.show();
}

void TrayIcon::setProblem(const QString& problem) {
    problem_->setText(problem);
    problem_->setVisible(!problem.isEmpty());
    icon_.setToolTip(problem.isEmpty() ? QStringLiteral("Glyma") : QStringLiteral("Glyma: ") + problem);
}

} // namespace glyma
