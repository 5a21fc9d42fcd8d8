#include "picker/qt/caret_overlay.h"

#include "picker/qt/picker_layout.h"
#include "picker/qt/screen_at.h"

#include <QPainter>
#include <QScreen>
#include <QWidget>

#include <algorithm>
#include <chrono>

namespace glyma::qt {

namespace {

// Logical pixels.
constexpr double lowestCaret = 20;
constexpr int lineOverhang = 30;
constexpr int shortestLine = 60;

class ColoredWindow : public QWidget {
public:
    ColoredWindow(const QRect& area, const QColor& color)
        : QWidget(nullptr, Qt::ToolTip | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                               Qt::BypassWindowManagerHint | Qt::WindowDoesNotAcceptFocus |
                               Qt::WindowTransparentForInput | Qt::NoDropShadowWindowHint)
        , color_(color) {
        setAttribute(Qt::WA_TranslucentBackground);
        setAttribute(Qt::WA_ShowWithoutActivating);
        setAttribute(Qt::WA_QuitOnClose, false);
        setGeometry(area);
    }

protected:
    void paintEvent(QPaintEvent*) override { QPainter(this).fillRect(rect(), color_); }

private:
    QColor color_;
};

} // namespace

CaretOverlay::CaretOverlay() {
    expiry_.setSingleShot(true);
    expiry_.setInterval(std::chrono::seconds(3));
    QObject::connect(&expiry_, &QTimer::timeout, [this] { clear(); });
}

CaretOverlay::~CaretOverlay() = default;

void CaretOverlay::clear() {
    for (auto& window : windows_)
        window.reset();
}

void CaretOverlay::show(const Rect& caret) {
    clear();
    const auto* screen = screenAt(caret.centre());
    if (!screen)
        return;
    const double scale = screen->devicePixelRatio();
    const auto area = logicalRect(caret, screen->geometry().topLeft(), scale);
    const auto counted =
        logicalRect({caret.x, caret.y, caret.width, std::max(caret.height, lowestCaret * scale)},
                    screen->geometry().topLeft(), scale);
    const auto line = [&](int y) {
        return QRect(area.x() - lineOverhang, y - 1, std::max(area.width(), shortestLine) + 2 * lineOverhang,
                     2);
    };
    windows_ = {std::make_unique<ColoredWindow>(QRect(area.topLeft(), area.size().expandedTo(QSize(1, 1))),
                                                QColor(255, 59, 48, 115)),
                std::make_unique<ColoredWindow>(line(area.y()), QColor(0, 122, 255)),
                std::make_unique<ColoredWindow>(line(counted.y() + counted.height()), QColor(40, 205, 65))};
    for (auto& window : windows_)
        window->show();
    expiry_.start();
}

} // namespace glyma::qt
