// A window that takes the focus and prints every key and focus event it gets, one line each:
//   ready | press KEYSYM STATE | release KEYSYM STATE | focus-in MODE | focus-out MODE

#include <xcb/xcb.h>
#include <xkbcommon/xkbcommon-x11.h>
#include <xkbcommon/xkbcommon.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <utility>

namespace {

template<auto Release>
struct Releaser {
    template<typename Object>
    void operator()(Object* object) const { Release(object); }
};
using Connection = std::unique_ptr<xcb_connection_t, Releaser<xcb_disconnect>>;
using Context = std::unique_ptr<xkb_context, Releaser<xkb_context_unref>>;
using Keymap = std::unique_ptr<xkb_keymap, Releaser<xkb_keymap_unref>>;
using Event = std::unique_ptr<xcb_generic_event_t, Releaser<std::free>>;

/// Names keys by the first level of their first layout, shifted where Shift is held.
class KeyNames {
public:
    explicit KeyNames(xcb_connection_t* connection)
        : context_(xkb_context_new(XKB_CONTEXT_NO_FLAGS))
        , keymap_(xkb_x11_keymap_new_from_device(context_.get(), connection,
                                                 xkb_x11_get_core_keyboard_device_id(connection),
                                                 XKB_KEYMAP_COMPILE_NO_FLAGS)) {}

    std::string name(xcb_keycode_t keycode, bool shifted) const {
        const xkb_keysym_t* keysyms = nullptr;
        const auto levels = xkb_keymap_num_levels_for_key(keymap_.get(), keycode, 0);
        const xkb_level_index_t level = shifted && levels > 1 ? 1 : 0;
        if (xkb_keymap_key_get_syms_by_level(keymap_.get(), keycode, 0, level, &keysyms) != 1)
            return "none";
        std::array<char, 64> text{};
        xkb_keysym_get_name(keysyms[0], text.data(), text.size());
        return text.data();
    }

private:
    Context context_;
    Keymap keymap_;
};

xcb_window_t openWindow(xcb_connection_t* connection) {
    const auto* screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
    const auto window = xcb_generate_id(connection);
    const std::array<std::uint32_t, 2> values{
        screen->white_pixel, XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_KEY_RELEASE | XCB_EVENT_MASK_FOCUS_CHANGE |
                                 XCB_EVENT_MASK_STRUCTURE_NOTIFY};
    xcb_create_window(connection, XCB_COPY_FROM_PARENT, window, screen->root, 100, 100, 500, 300, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual, XCB_CW_BACK_PIXEL | XCB_CW_EVENT_MASK,
                      values.data());
    const std::string title = "key recorder";
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8,
                        static_cast<std::uint32_t>(title.size()), title.data());
    xcb_map_window(connection, window);
    xcb_flush(connection);
    return window;
}

const char* modeName(std::uint8_t mode) {
    switch (mode) {
    case XCB_NOTIFY_MODE_NORMAL:
        return "normal";
    case XCB_NOTIFY_MODE_GRAB:
        return "grab";
    case XCB_NOTIFY_MODE_UNGRAB:
        return "ungrab";
    default:
        return "while-grabbed";
    }
}

} // namespace

int main() {
    const Connection connection(xcb_connect(nullptr, nullptr));
    if (xcb_connection_has_error(connection.get())) {
        std::fputs("key_recorder: there is no display\n", stderr);
        return 1;
    }
    xkb_x11_setup_xkb_extension(connection.get(), XKB_X11_MIN_MAJOR_XKB_VERSION, XKB_X11_MIN_MINOR_XKB_VERSION,
                                XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr, nullptr, nullptr);
    const KeyNames names(connection.get());
    const auto window = openWindow(connection.get());
    bool hasFocus = false;
    while (const Event event{xcb_wait_for_event(connection.get())}) {
        switch (event->response_type & ~0x80) {
        case XCB_MAP_NOTIFY:
            xcb_set_input_focus(connection.get(), XCB_INPUT_FOCUS_PARENT, window, XCB_CURRENT_TIME);
            xcb_flush(connection.get());
            break;
        case XCB_KEY_PRESS:
        case XCB_KEY_RELEASE: {
            const auto& key = reinterpret_cast<const xcb_key_press_event_t&>(*event);
            const bool pressed = (event->response_type & ~0x80) == XCB_KEY_PRESS;
            std::printf("%s %s %u\n", pressed ? "press" : "release",
                        names.name(key.detail, key.state & XCB_MOD_MASK_SHIFT).c_str(), key.state);
            break;
        }
        case XCB_FOCUS_IN:
        case XCB_FOCUS_OUT: {
            const auto& focus = reinterpret_cast<const xcb_focus_in_event_t&>(*event);
            const bool in = (event->response_type & ~0x80) == XCB_FOCUS_IN;
            std::printf("%s %s\n", in ? "focus-in" : "focus-out", modeName(focus.mode));
            if (in && !std::exchange(hasFocus, true))
                std::puts("ready");
            break;
        }
        default:
            break;
        }
        std::fflush(stdout);
    }
}
