#include "platform/linux/x11/key_codes.h"

#include "platform/key_event.h"

#include <xkbcommon/xkbcommon-keysyms.h>

#include <algorithm>
#include <array>

namespace glyma::x11 {

namespace {

struct Key {
    std::uint16_t code;
    xcb_keycode_t position;
    xkb_keysym_t keysym;
};

// Codes: the virtual key codes of an ANSI keyboard. Positions: Linux input event codes plus 8.
constexpr auto keys = std::to_array<Key>({
    {0, 38, XKB_KEY_a},
    {1, 39, XKB_KEY_s},
    {2, 40, XKB_KEY_d},
    {3, 41, XKB_KEY_f},
    {4, 43, XKB_KEY_h},
    {5, 42, XKB_KEY_g},
    {6, 52, XKB_KEY_z},
    {7, 53, XKB_KEY_x},
    {8, 54, XKB_KEY_c},
    {9, 55, XKB_KEY_v},
    {10, 94, XKB_KEY_section}, // the key that ISO keyboards have beside the left Shift
    {11, 56, XKB_KEY_b},
    {12, 24, XKB_KEY_q},
    {13, 25, XKB_KEY_w},
    {14, 26, XKB_KEY_e},
    {15, 27, XKB_KEY_r},
    {16, 29, XKB_KEY_y},
    {17, 28, XKB_KEY_t},
    {18, 10, XKB_KEY_1},
    {19, 11, XKB_KEY_2},
    {20, 12, XKB_KEY_3},
    {21, 13, XKB_KEY_4},
    {22, 15, XKB_KEY_6},
    {23, 14, XKB_KEY_5},
    {24, 21, XKB_KEY_equal},
    {25, 18, XKB_KEY_9},
    {26, 16, XKB_KEY_7},
    {27, 20, XKB_KEY_minus},
    {28, 17, XKB_KEY_8},
    {29, 19, XKB_KEY_0},
    {30, 35, XKB_KEY_bracketright},
    {31, 32, XKB_KEY_o},
    {32, 30, XKB_KEY_u},
    {33, 34, XKB_KEY_bracketleft},
    {34, 31, XKB_KEY_i},
    {35, 33, XKB_KEY_p},
    {36, 36, XKB_KEY_Return},
    {37, 46, XKB_KEY_l},
    {38, 44, XKB_KEY_j},
    {39, 48, XKB_KEY_apostrophe},
    {40, 45, XKB_KEY_k},
    {41, 47, XKB_KEY_semicolon},
    {42, 51, XKB_KEY_backslash},
    {43, 59, XKB_KEY_comma},
    {44, 61, XKB_KEY_slash},
    {45, 57, XKB_KEY_n},
    {46, 58, XKB_KEY_m},
    {47, 60, XKB_KEY_period},
    {48, 23, XKB_KEY_Tab},
    {49, 65, XKB_KEY_space},
    {50, 49, XKB_KEY_grave},
    {51, 22, XKB_KEY_BackSpace},
    {53, 9, XKB_KEY_Escape},
    {54, 134, XKB_KEY_Super_R},
    {55, 133, XKB_KEY_Super_L},
    {56, 50, XKB_KEY_Shift_L},
    {57, 66, XKB_KEY_Caps_Lock},
    {58, 64, XKB_KEY_Alt_L},
    {59, 37, XKB_KEY_Control_L},
    {60, 62, XKB_KEY_Shift_R},
    {61, 108, XKB_KEY_Alt_R},
    {62, 105, XKB_KEY_Control_R},
    {64, 195, XKB_KEY_F17},
    {65, 91, XKB_KEY_KP_Decimal},
    {67, 63, XKB_KEY_KP_Multiply},
    {69, 86, XKB_KEY_KP_Add},
    {71, 77, XKB_KEY_Num_Lock},
    {75, 106, XKB_KEY_KP_Divide},
    {76, 104, XKB_KEY_KP_Enter},
    {78, 82, XKB_KEY_KP_Subtract},
    {79, 196, XKB_KEY_F18},
    {80, 197, XKB_KEY_F19},
    {81, 125, XKB_KEY_KP_Equal},
    {82, 90, XKB_KEY_KP_0},
    {83, 87, XKB_KEY_KP_1},
    {84, 88, XKB_KEY_KP_2},
    {85, 89, XKB_KEY_KP_3},
    {86, 83, XKB_KEY_KP_4},
    {87, 84, XKB_KEY_KP_5},
    {88, 85, XKB_KEY_KP_6},
    {89, 79, XKB_KEY_KP_7},
    {90, 198, XKB_KEY_F20},
    {91, 80, XKB_KEY_KP_8},
    {92, 81, XKB_KEY_KP_9},
    {96, 71, XKB_KEY_F5},
    {97, 72, XKB_KEY_F6},
    {98, 73, XKB_KEY_F7},
    {99, 69, XKB_KEY_F3},
    {100, 74, XKB_KEY_F8},
    {101, 75, XKB_KEY_F9},
    {103, 95, XKB_KEY_F11},
    {105, 191, XKB_KEY_F13},
    {106, 194, XKB_KEY_F16},
    {107, 192, XKB_KEY_F14},
    {109, 76, XKB_KEY_F10},
    {110, 135, XKB_KEY_Menu},
    {111, 96, XKB_KEY_F12},
    {113, 193, XKB_KEY_F15},
    {114, 118, XKB_KEY_Insert},
    {115, 110, XKB_KEY_Home},
    {116, 112, XKB_KEY_Prior},
    {117, 119, XKB_KEY_Delete},
    {118, 70, XKB_KEY_F4},
    {119, 115, XKB_KEY_End},
    {120, 68, XKB_KEY_F2},
    {121, 117, XKB_KEY_Next},
    {122, 67, XKB_KEY_F1},
    {123, 113, XKB_KEY_Left},
    {124, 114, XKB_KEY_Right},
    {125, 116, XKB_KEY_Down},
    {126, 111, XKB_KEY_Up},
});

template<typename Field, typename Value>
const Key* find(Field field, Value value) {
    const auto found = std::ranges::find(keys, value, field);
    return found == keys.end() ? nullptr : &*found;
}

xkb_keysym_t plainCounterpart(xkb_keysym_t keysym) {
    switch (keysym) {
    case XKB_KEY_KP_Home:
        return XKB_KEY_Home;
    case XKB_KEY_KP_Left:
        return XKB_KEY_Left;
    case XKB_KEY_KP_Up:
        return XKB_KEY_Up;
    case XKB_KEY_KP_Right:
        return XKB_KEY_Right;
    case XKB_KEY_KP_Down:
        return XKB_KEY_Down;
    case XKB_KEY_KP_Prior:
        return XKB_KEY_Prior;
    case XKB_KEY_KP_Next:
        return XKB_KEY_Next;
    case XKB_KEY_KP_End:
        return XKB_KEY_End;
    case XKB_KEY_KP_Insert:
        return XKB_KEY_Insert;
    case XKB_KEY_KP_Delete:
        return XKB_KEY_Delete;
    case XKB_KEY_KP_Tab:
    case XKB_KEY_ISO_Left_Tab:
        return XKB_KEY_Tab;
    case XKB_KEY_Help:
        return XKB_KEY_Insert;
    case XKB_KEY_Meta_L:
        return XKB_KEY_Alt_L;
    case XKB_KEY_Meta_R:
        return XKB_KEY_Alt_R;
    default:
        return keysym;
    }
}

// XKB_KEY_BackSpace, Tab, Return, Escape, Home to End, Insert, Menu, Num_Lock, F1.., modifiers and Delete lie
// in this block of keysyms together with the keypad, whose digits and signs type.
bool acts(xkb_keysym_t keysym) {
    const bool isTypingKeypadKey =
        keysym >= XKB_KEY_KP_Space && keysym <= XKB_KEY_KP_Equal && keysym != XKB_KEY_KP_Enter;
    return keysym >= XKB_KEY_BackSpace && keysym <= XKB_KEY_Delete && !isTypingKeypadKey;
}

} // namespace

std::uint16_t codeAtPosition(xcb_keycode_t key) {
    const auto* const found = find(&Key::position, key);
    return found ? found->code : keycode::unknown;
}

std::optional<xcb_keycode_t> positionOfCode(std::uint16_t code) {
    const auto* const found = find(&Key::code, code);
    return found ? std::optional(found->position) : std::nullopt;
}

xkb_keysym_t americanKeysym(std::uint16_t code) {
    const auto* const found = find(&Key::code, code);
    return found ? found->keysym : static_cast<xkb_keysym_t>(XKB_KEY_NoSymbol);
}

std::optional<std::uint16_t> codeOfActingKeysym(xkb_keysym_t keysym) {
    const auto plain = plainCounterpart(keysym);
    if (!acts(plain))
        return std::nullopt;
    const auto* const found = find(&Key::keysym, plain);
    return found ? std::optional(found->code) : std::nullopt;
}

std::uint16_t codeOfPress(xcb_keycode_t key, xkb_keysym_t keysym) {
    if (const auto acting = codeOfActingKeysym(keysym))
        return *acting;
    const auto byPlace = codeAtPosition(key);
    // A key that acts elsewhere but types here has been given another meaning (an Escape that types a grave).
    const bool isGivenAway =
        codeOfActingKeysym(americanKeysym(byPlace)) && xkb_keysym_to_utf32(keysym) >= U' ';
    return isGivenAway ? keycode::unknown : byPlace;
}

std::string textOfKeysym(xkb_keysym_t keysym) {
    std::array<char, 16> buffer{};
    return xkb_keysym_to_utf8(keysym, buffer.data(), buffer.size()) > 0 ? buffer.data() : std::string();
}

} // namespace glyma::x11
