#include "platform/qt/qt_screens.h"

#include <QApplication>
#include <QCursor>
#include <QScreen>

#include <cmath>

namespace glyma::qt {

Rect deviceRect(QRect logical, QPoint screenOrigin, double scale) {
    const auto corner = devicePoint(logical.topLeft(), screenOrigin, scale);
    return {corner.x, corner.y, std::round(logical.width() * scale), std::round(logical.height() * scale)};
}

Point devicePoint(QPoint logical, QPoint screenOrigin, double scale) {
    const auto offset = logical - screenOrigin;
    return {screenOrigin.x() + std::round(offset.x() * scale),
            screenOrigin.y() + std::round(offset.y() * scale)};
}

std::vector<Screen> QtScreens::all() {
    std::vector<Screen> result;
    const auto* primary = QGuiApplication::primaryScreen();
    for (const auto* screen : QGuiApplication::screens()) {
        const auto origin = screen->geometry().topLeft();
        const auto scale = screen->devicePixelRatio();
        const Screen entry{deviceRect(screen->geometry(), origin, scale),
                           deviceRect(screen->availableGeometry(), origin, scale), scale};
        result.insert(screen == primary ? result.begin() : result.end(), entry);
    }
    return result;
}

Point QtScreens::pointerLocation() {
    const auto position = QCursor::pos();
    const auto* screen = QGuiApplication::screenAt(position);
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    if (!screen)
        return {};
    return devicePoint(position, screen->geometry().topLeft(), screen->devicePixelRatio());
}

void QtBell::ring() {
    QApplication::beep();
}

} // namespace glyma::qt
