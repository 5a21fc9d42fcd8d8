#include "picker/qt/keyboard_loan.h"

#include "picker/qt/x11_window.h"

#include <QWidget>
#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>
#include <utility>

namespace glyma::qt {

namespace {

std::uint32_t focusOf(xcb_connection_t* x) {
    const std::unique_ptr<xcb_get_input_focus_reply_t, decltype(&std::free)> reply(
        xcb_get_input_focus_reply(x, xcb_get_input_focus(x), nullptr), &std::free);
    return reply ? reply->focus : static_cast<std::uint32_t>(XCB_INPUT_FOCUS_NONE);
}

} // namespace

void KeyboardLoan::take(QWidget& window) {
    auto* x = x11Connection();
    if (!x)
        return window.activateWindow();
    const auto own = static_cast<std::uint32_t>(window.winId());
    if (const auto focus = focusOf(x); focus != own)
        lender_ = focus;
    // Qt would ask with the time of the last event it saw, which the server takes for too old when the focus
    // has moved since.
    xcb_set_input_focus(x, XCB_INPUT_FOCUS_PARENT, own, XCB_CURRENT_TIME);
    xcb_flush(x);
}

void KeyboardLoan::giveBack(const QWidget& window) {
    auto* x = x11Connection();
    const auto lender = std::exchange(lender_, 0);
    if (!x || lender == 0 || !window.internalWinId() || focusOf(x) != window.internalWinId())
        return;
    xcb_set_input_focus(x, XCB_INPUT_FOCUS_PARENT, lender, XCB_CURRENT_TIME);
    xcb_flush(x);
}

} // namespace glyma::qt
