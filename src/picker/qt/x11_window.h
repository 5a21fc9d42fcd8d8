#pragma once

#include "platform/subscription.h"

#include <QAbstractNativeEventFilter>
#include <QRect>

#include <cstdint>
#include <vector>

class QWidget;
struct xcb_connection_t;

namespace glyma::qt {

/// Qt's connection to the X server; null on another platform.
xcb_connection_t* x11Connection();

/// Knows whether a compositor runs, that is, whether translucent windows are drawn as such. On another
/// platform than X11 none is assumed. Main thread; needs the application object.
class CompositorWatch : public QAbstractNativeEventFilter {
public:
    CompositorWatch();
    ~CompositorWatch() override;
    CompositorWatch(const CompositorWatch&) = delete;
    CompositorWatch& operator=(const CompositorWatch&) = delete;

    bool isRunning() const { return isRunning_; }
    /// Whether it also blurs what lies behind a window that asks for it.
    bool canBlur() const { return canBlur_; }

    Signal<> changed;

    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

private:
    void watch();
    void update();

    std::uint32_t selection_ = 0;
    int firstEvent_ = -1;
    bool isRunning_ = false;
    bool canBlur_ = false;
};

/// A rounded rectangle as horizontal strips, top to bottom, in the rectangle's unit.
std::vector<QRect> roundedStrips(const QRect& rect, double radius);

/// How a window without the window manager's help looks to the X server. Device pixels, relative to the
/// window.
struct WindowShape {
    QSize window;
    QRect panel; ///< the part that is drawn and takes clicks
    double radius = 0;
    bool isComposited = false;
    bool operator==(const WindowShape&) const = default;
};

/// With a compositor the whole window is drawn but only the panel takes clicks, has a blurred background
/// (where the compositor offers that) and counts as the frame (for its shadow rules); without one the window
/// is cut to the panel. Nothing on another platform than X11.
void applyShape(const QWidget& widget, const WindowShape& shape);

} // namespace glyma::qt
