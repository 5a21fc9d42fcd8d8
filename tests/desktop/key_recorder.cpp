// A plain window that takes the focus and prints what its application would get, one line each:
//
//     ready 0x400001
//     press keycode=39 keysym=s state=0x1 text="S"
//     release keycode=39 keysym=s state=0x1
//     focus in mode=normal
//
// Times are left out so that two runs compare. Ends with the X server or when its standard input closes.

#include <fmt/format.h>
#include <xcb/xcb.h>
#include <xkbcommon/xkbcommon-x11.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <poll.h>
#include <string>
#include <string_view>
#include <unistd.h>

namespace {

struct Keyboard {
    explicit Keyboard(xcb_connection_t* server)
        : connection(server)
        , context(xkb_context_new(XKB_CONTEXT_NO_FLAGS)) {
        xkb_x11_setup_xkb_extension(server, 1, 0, XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr,
                                    nullptr, nullptr);
        reload();
    }
    void reload() {
        xkb_keymap_unref(keymap);
        xkb_state_unref(state);
        keymap = xkb_x11_keymap_new_from_device(context, connection,
                                                xkb_x11_get_core_keyboard_device_id(connection),
                                                XKB_KEYMAP_COMPILE_NO_FLAGS);
        state = xkb_state_new(keymap);
    }
    // A core event carries its modifiers in the low byte and its layout in bits 13 and 14.
    void use(std::uint16_t eventState) {
        xkb_state_update_mask(state, eventState & 0xFF, 0, 0, 0, 0, (eventState >> 13) & 3);
    }

    xcb_connection_t* connection;
    xkb_context* context;
    xkb_keymap* keymap = nullptr;
    xkb_state* state = nullptr;
};

void say(const std::string& line) {
    std::puts(line.c_str());
    std::fflush(stdout);
}

std::string quoted(std::string_view text) {
    std::string result = "\"";
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        if (byte < 0x20 || byte == 0x7F)
            result += fmt::format("\\x{:02x}", byte);
        else if (character == '"' || character == '\\')
            result += {'\\', character};
        else
            result += character;
    }
    return result + '"';
}

std::string_view nameOfMode(std::uint8_t mode) {
    static constexpr std::array<std::string_view, 4> names = {"normal", "grab", "ungrab", "while-grabbed"};
    return mode < names.size() ? names[mode] : "unknown";
}

void record(const xcb_key_press_event_t& event, bool isPress, Keyboard& keyboard) {
    keyboard.use(event.state);
    std::array<char, 64> name{};
    xkb_keysym_get_name(xkb_state_key_get_one_sym(keyboard.state, event.detail), name.data(), name.size());
    auto line = fmt::format("{} keycode={} keysym={} state=0x{:x}", isPress ? "press" : "release",
                            event.detail, name.data(), event.state);
    if (isPress) {
        std::array<char, 64> text{};
        xkb_state_key_get_utf8(keyboard.state, event.detail, text.data(), text.size());
        line += " text=" + quoted(text.data());
    }
    say(line);
}

void handle(const xcb_generic_event_t& event, Keyboard& keyboard) {
    switch (const auto type = event.response_type & 0x7F; type) {
    case XCB_KEY_PRESS:
    case XCB_KEY_RELEASE:
        record(reinterpret_cast<const xcb_key_press_event_t&>(event), type == XCB_KEY_PRESS, keyboard);
        break;
    case XCB_FOCUS_IN:
    case XCB_FOCUS_OUT:
        say(fmt::format("focus {} mode={}", type == XCB_FOCUS_IN ? "in" : "out",
                        nameOfMode(reinterpret_cast<const xcb_focus_in_event_t&>(event).mode)));
        break;
    case XCB_MAPPING_NOTIFY:
        keyboard.reload();
        break;
    default:
        break;
    }
}

xcb_window_t openWindow(xcb_connection_t* server) {
    const auto* const screen = xcb_setup_roots_iterator(xcb_get_setup(server)).data;
    const auto window = xcb_generate_id(server);
    const std::array<std::uint32_t, 2> values = {
        screen->white_pixel, XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_KEY_RELEASE |
                                 XCB_EVENT_MASK_FOCUS_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY};
    xcb_create_window(server, XCB_COPY_FROM_PARENT, window, screen->root, 100, 100, 400, 200, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual,
                      XCB_CW_BACK_PIXEL | XCB_CW_EVENT_MASK, values.data());
    constexpr std::string_view name = "key_recorder";
    xcb_change_property(server, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8,
                        name.size(), name.data());
    constexpr std::string_view wmClass("key_recorder\0KeyRecorder\0", 25);
    xcb_change_property(server, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8,
                        wmClass.size(), wmClass.data());
    xcb_map_window(server, window);
    xcb_flush(server);
    return window;
}

} // namespace

int main() {
    auto* const server = xcb_connect(nullptr, nullptr);
    if (xcb_connection_has_error(server)) {
        std::fputs("key_recorder: no X display\n", stderr);
        return EXIT_FAILURE;
    }
    Keyboard keyboard(server);
    const auto window = openWindow(server);
    bool isReady = false;
    while (!xcb_connection_has_error(server)) {
        while (const std::unique_ptr<xcb_generic_event_t, decltype(&std::free)> event{
            xcb_poll_for_event(server), &std::free}) {
            if ((event->response_type & 0x7F) == XCB_MAP_NOTIFY && !isReady) {
                xcb_set_input_focus(server, XCB_INPUT_FOCUS_PARENT, window, XCB_CURRENT_TIME);
                xcb_flush(server);
                say(fmt::format("ready 0x{:x}", window));
                isReady = true;
            }
            handle(*event, keyboard);
        }
        std::array<pollfd, 2> descriptors{pollfd{xcb_get_file_descriptor(server), POLLIN, 0},
                                          pollfd{STDIN_FILENO, POLLIN, 0}};
        poll(descriptors.data(), descriptors.size(), -1);
        char ignored = 0;
        if (descriptors[1].revents && read(STDIN_FILENO, &ignored, 1) <= 0)
            break;
    }
    return EXIT_SUCCESS;
}
