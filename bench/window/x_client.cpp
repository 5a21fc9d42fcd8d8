#include "x_client.h"

#include <xcb/xtest.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <poll.h>
#include <thread>

namespace glyma::bench {

namespace {

using namespace std::chrono_literals;

// A caret or a tray icon is smaller, the smallest picker larger.
constexpr int smallestPaintedWidth = 150;
constexpr int smallestPaintedHeight = 40;
constexpr int smallestPickerWidth = 300;
constexpr int smallestPickerHeight = 90;
constexpr auto paintLimit = 1s;
constexpr auto burstEnd = 8ms;
constexpr auto settled = 60ms;

struct Free {
    void operator()(void* reply) const { std::free(reply); }
};

[[noreturn]] void fail(const char* message) {
    std::fprintf(stderr, "bench_window: %s\n", message);
    std::exit(1);
}

} // namespace

XClient::XClient()
    : connection_(xcb_connect(nullptr, nullptr)) {
    if (xcb_connection_has_error(connection_))
        fail("no display");
    const auto* screen = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data;
    root_ = screen->root;
    const auto* damage = xcb_get_extension_data(connection_, &xcb_damage_id);
    const auto* test = xcb_get_extension_data(connection_, &xcb_test_id);
    if (!damage->present || !test->present)
        fail("the display has no XDamage or no XTEST");
    damageEvent_ = damage->first_event;
    std::unique_ptr<xcb_damage_query_version_reply_t, Free> version(
        xcb_damage_query_version_reply(connection_, xcb_damage_query_version(connection_, 1, 1), nullptr));
    xcb_damage_create(connection_, xcb_generate_id(connection_), root_,
                      XCB_DAMAGE_REPORT_LEVEL_RAW_RECTANGLES);
    xcb_flush(connection_);
}

XClient::~XClient() {
    xcb_disconnect(connection_);
}

void XClient::openTarget() {
    const auto* screen = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data;
    target_ = xcb_generate_id(connection_);
    const std::uint32_t values[] = {screen->white_pixel, XCB_EVENT_MASK_FOCUS_CHANGE};
    xcb_create_window(connection_, XCB_COPY_FROM_PARENT, target_, root_, 40, 40, 400, 300, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual,
                      XCB_CW_BACK_PIXEL | XCB_CW_EVENT_MASK, values);
    constexpr char instance[] = "typing-target\0Typing-target";
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, target_, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8,
                        sizeof instance, instance);
    xcb_map_window(connection_, target_);
    xcb_flush(connection_);
    std::this_thread::sleep_for(300ms); // the window manager's turn
    xcb_set_input_focus(connection_, XCB_INPUT_FOCUS_PARENT, target_, XCB_CURRENT_TIME);
    xcb_flush(connection_);
    settle();
}

void XClient::fakeKey(std::uint8_t type, std::uint8_t keycode) {
    xcb_test_fake_input(connection_, type, keycode, XCB_CURRENT_TIME, root_, 0, 0, 0);
    xcb_flush(connection_);
}

void XClient::press(std::uint8_t keycode) {
    fakeKey(XCB_KEY_PRESS, keycode);
}

void XClient::release(std::uint8_t keycode) {
    fakeKey(XCB_KEY_RELEASE, keycode);
}

void XClient::tap(std::uint8_t keycode) {
    press(keycode);
    release(keycode);
}

bool XClient::waitForEvent(Clock::time_point deadline) {
    const auto left = std::chrono::duration_cast<std::chrono::microseconds>(deadline - Clock::now()).count();
    if (left <= 0)
        return false;
    const timespec timeout{left / 1'000'000, (left % 1'000'000) * 1000};
    pollfd descriptor{xcb_get_file_descriptor(connection_), POLLIN, 0};
    return ppoll(&descriptor, 1, &timeout, nullptr) > 0;
}

std::optional<Clock::time_point> XClient::nextPaint(Clock::time_point deadline) {
    do {
        while (const std::unique_ptr<xcb_generic_event_t, Free> event{xcb_poll_for_event(connection_)}) {
            if ((event->response_type & 0x7f) != damageEvent_ + XCB_DAMAGE_NOTIFY)
                continue;
            const auto* notify = reinterpret_cast<const xcb_damage_notify_event_t*>(event.get());
            if (notify->area.width >= smallestPaintedWidth && notify->area.height >= smallestPaintedHeight)
                return Clock::now();
        }
        if (xcb_connection_has_error(connection_))
            fail("the display has gone");
    } while (waitForEvent(deadline));
    return std::nullopt;
}

std::optional<std::chrono::microseconds> XClient::timeToPainted(Clock::time_point start) {
    auto last = nextPaint(start + paintLimit);
    if (!last)
        return std::nullopt;
    while (const auto next = nextPaint(*last + burstEnd))
        last = next;
    return std::chrono::duration_cast<std::chrono::microseconds>(*last - start);
}

void XClient::settle() {
    while (nextPaint(Clock::now() + settled)) {
    }
}

bool XClient::isPickerShown() {
    const std::unique_ptr<xcb_query_tree_reply_t, Free> tree(
        xcb_query_tree_reply(connection_, xcb_query_tree(connection_, root_), nullptr));
    for (int index = 0; tree && index < xcb_query_tree_children_length(tree.get()); ++index) {
        const auto window = xcb_query_tree_children(tree.get())[index];
        const std::unique_ptr<xcb_get_window_attributes_reply_t, Free> attributes(
            xcb_get_window_attributes_reply(connection_, xcb_get_window_attributes(connection_, window),
                                            nullptr));
        const std::unique_ptr<xcb_get_geometry_reply_t, Free> geometry(
            xcb_get_geometry_reply(connection_, xcb_get_geometry(connection_, window), nullptr));
        if (window != target_ && attributes && geometry && attributes->override_redirect &&
            attributes->map_state == XCB_MAP_STATE_VIEWABLE && geometry->x > -1000 &&
            geometry->width >= smallestPickerWidth && geometry->height >= smallestPickerHeight)
            return true;
    }
    return false;
}

} // namespace glyma::bench
