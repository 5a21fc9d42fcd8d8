#include "picker/qt/screen_at.h"

#include "platform/qt/qt_screens.h"

#include <QGuiApplication>
#include <QScreen>

namespace glyma::qt {

QScreen* screenAt(Point device) {
    for (auto* screen : QGuiApplication::screens())
        if (deviceRect(screen->geometry(), screen->geometry().topLeft(), screen->devicePixelRatio())
                .contains(device))
            return screen;
    return QGuiApplication::primaryScreen();
}

} // namespace glyma::qt
