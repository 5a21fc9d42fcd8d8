#include "picker/qt/x11_window.h"

#include <QGuiApplication>
#include <QWidget>
#include <qguiapplication_platform.h>
#include <xcb/shape.h>
#include <xcb/xcb.h>
#include <xcb/xfixes.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <span>
#include <utility>

namespace glyma::qt {

namespace {

struct Free {
    void operator()(void* reply) const { std::free(reply); }
};
template<typename Reply>
using ReplyPointer = std::unique_ptr<Reply, Free>;

xcb_atom_t atom(xcb_connection_t* connection, const char* name) {
    const auto cookie = xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(std::strlen(name)), name);
    const ReplyPointer<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection, cookie, nullptr));
    return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

/// A compositor that blurs says so by having the hint's name among the root window's properties.
bool rootOffersBlur(xcb_connection_t* connection) {
    const auto root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    const ReplyPointer<xcb_list_properties_reply_t> reply(
        xcb_list_properties_reply(connection, xcb_list_properties(connection, root), nullptr));
    if (!reply)
        return false;
    const std::span properties(xcb_list_properties_atoms(reply.get()),
                               static_cast<std::size_t>(xcb_list_properties_atoms_length(reply.get())));
    return std::ranges::find(properties, atom(connection, "_KDE_NET_WM_BLUR_BEHIND_REGION")) !=
           properties.end();
}

void setCardinals(xcb_connection_t* connection, xcb_window_t window, xcb_atom_t property,
                  std::span<const std::uint32_t> values) {
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, property, XCB_ATOM_CARDINAL, 32,
                        static_cast<std::uint32_t>(values.size()), values.data());
}

std::vector<xcb_rectangle_t> xRectangles(std::span<const QRect> strips) {
    std::vector<xcb_rectangle_t> result;
    for (const auto& strip : strips)
        result.push_back({static_cast<std::int16_t>(strip.x()), static_cast<std::int16_t>(strip.y()),
                          static_cast<std::uint16_t>(strip.width()),
                          static_cast<std::uint16_t>(strip.height())});
    return result;
}

void setRegion(xcb_connection_t* connection, xcb_window_t window, xcb_shape_kind_t kind,
               std::span<const xcb_rectangle_t> rectangles) {
    xcb_shape_rectangles(connection, XCB_SHAPE_SO_SET, kind, XCB_CLIP_ORDERING_YX_BANDED, window, 0, 0,
                         static_cast<std::uint32_t>(rectangles.size()), rectangles.data());
}

void clearRegion(xcb_connection_t* connection, xcb_window_t window, xcb_shape_kind_t kind) {
    xcb_shape_mask(connection, XCB_SHAPE_SO_SET, kind, window, 0, 0, XCB_NONE);
}

void setCompositorHints(xcb_connection_t* connection, xcb_window_t window, const WindowShape& shape,
                        std::span<const QRect> strips) {
    static const auto frameExtents = atom(connection, "_GTK_FRAME_EXTENTS");
    static const auto blurRegion = atom(connection, "_KDE_NET_WM_BLUR_BEHIND_REGION");
    const auto& panel = shape.panel;
    const std::uint32_t extents[] = {static_cast<std::uint32_t>(panel.left()),
                                     static_cast<std::uint32_t>(shape.window.width() - panel.right() - 1),
                                     static_cast<std::uint32_t>(panel.top()),
                                     static_cast<std::uint32_t>(shape.window.height() - panel.bottom() - 1)};
    setCardinals(connection, window, frameExtents, extents);
    std::vector<std::uint32_t> blurred;
    for (const auto& strip : strips)
        for (const int value : {strip.x(), strip.y(), strip.width(), strip.height()})
            blurred.push_back(static_cast<std::uint32_t>(value));
    setCardinals(connection, window, blurRegion, blurred);
}

} // namespace

xcb_connection_t* x11Connection() {
    const auto* x11 = qApp ? qApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    return x11 ? x11->connection() : nullptr;
}

CompositorWatch::CompositorWatch() {
    watch();
    update();
    qApp->installNativeEventFilter(this);
}

CompositorWatch::~CompositorWatch() {
    if (qApp)
        qApp->removeNativeEventFilter(this);
}

void CompositorWatch::watch() {
    auto* x = x11Connection();
    if (!x)
        return;
    // Qt shows one X screen, the first, whatever its number of monitors.
    selection_ = atom(x, "_NET_WM_CM_S0");
    const auto* extension = xcb_get_extension_data(x, &xcb_xfixes_id);
    if (!extension || !extension->present)
        return;
    const ReplyPointer<xcb_xfixes_query_version_reply_t> version(
        xcb_xfixes_query_version_reply(x, xcb_xfixes_query_version(x, 2, 0), nullptr));
    firstEvent_ = extension->first_event;
    const auto root = xcb_setup_roots_iterator(xcb_get_setup(x)).data->root;
    xcb_xfixes_select_selection_input(x, root, selection_,
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
}

void CompositorWatch::update() {
    auto* x = x11Connection();
    if (!x)
        return;
    const ReplyPointer<xcb_get_selection_owner_reply_t> reply(
        xcb_get_selection_owner_reply(x, xcb_get_selection_owner(x, selection_), nullptr));
    const bool isRunning = reply && reply->owner != XCB_NONE;
    const bool canBlur = isRunning && rootOffersBlur(x);
    const bool differs = isRunning != isRunning_ || canBlur != canBlur_;
    isRunning_ = isRunning;
    canBlur_ = canBlur;
    if (differs)
        changed.emit();
}

bool CompositorWatch::nativeEventFilter(const QByteArray& eventType, void* message, qintptr*) {
    if (firstEvent_ < 0 || eventType != "xcb_generic_event_t")
        return false;
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    if ((event->response_type & 0x7f) != firstEvent_ + XCB_XFIXES_SELECTION_NOTIFY)
        return false;
    const auto* notify = reinterpret_cast<const xcb_xfixes_selection_notify_event_t*>(event);
    if (notify->selection == selection_)
        update();
    return false;
}

std::vector<QRect> roundedStrips(const QRect& rect, double radius) {
    std::vector<QRect> result;
    const int corner = std::min({static_cast<int>(std::ceil(radius)), rect.width() / 2, rect.height() / 2});
    const auto inset = [&](int line) {
        const double distance = radius - (line + 0.5);
        return static_cast<int>(
            std::lround(radius - std::sqrt(std::max(0.0, radius * radius - distance * distance))));
    };
    for (int line = 0; line < corner; ++line)
        result.emplace_back(rect.x() + inset(line), rect.y() + line, rect.width() - 2 * inset(line), 1);
    result.emplace_back(rect.x(), rect.y() + corner, rect.width(), rect.height() - 2 * corner);
    for (int line = corner - 1; line >= 0; --line)
        result.emplace_back(rect.x() + inset(line), rect.y() + rect.height() - 1 - line,
                            rect.width() - 2 * inset(line), 1);
    return result;
}

void applyShape(const QWidget& widget, const WindowShape& shape) {
    auto* x = x11Connection();
    if (!x || !widget.internalWinId())
        return;
    const auto window = static_cast<xcb_window_t>(widget.internalWinId());
    const auto strips = roundedStrips(shape.panel, shape.radius);
    const auto rectangles = xRectangles(strips);
    if (shape.isComposited) {
        clearRegion(x, window, XCB_SHAPE_SK_BOUNDING);
        setRegion(x, window, XCB_SHAPE_SK_INPUT, rectangles);
        setCompositorHints(x, window, shape, strips);
    } else {
        setRegion(x, window, XCB_SHAPE_SK_BOUNDING, rectangles);
        clearRegion(x, window, XCB_SHAPE_SK_INPUT);
    }
    xcb_flush(x);
}

} // namespace glyma::qt
