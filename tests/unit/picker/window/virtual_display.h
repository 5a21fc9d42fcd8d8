#pragma once

#include "platform/geometry.h"

#include <QRegion>
#include <xcb/xcb.h>

#include <memory>
#include <sys/types.h>

class QApplication;

namespace glyma {

/// An X server and a session bus of the tests' own, the application on them, and somebody with a mouse.
/// Device pixels.
class VirtualDisplay {
public:
    static VirtualDisplay& shared();
    VirtualDisplay();
    ~VirtualDisplay();

    void movePointer(double x, double y);
    void click(Point point);
    void scroll(Point point, int notches);

    /// Makes a window of another client and gives it the keyboard.
    void focusNewWindow();
    bool hasFocus();
    /// Owns the selection by which a compositor is known, as one does.
    void startCompositor();
    void endCompositor();

    bool isShown(unsigned window);
    bool isOverrideRedirect(unsigned window);
    Rect geometry(unsigned window);
    QRegion visibleRegion(unsigned window);
    QRegion inputRegion(unsigned window);

private:
    void fake(std::uint8_t type, std::uint8_t detail, Point point = {});
    QRegion region(unsigned window, std::uint8_t kind);
    void sync();

    pid_t server_ = 0;
    pid_t bus_ = 0;
    xcb_connection_t* connection_ = nullptr;
    xcb_window_t root_ = 0;
    xcb_window_t focused_ = 0;
    xcb_window_t compositor_ = 0;
    std::unique_ptr<QApplication> application_;
};

} // namespace glyma
