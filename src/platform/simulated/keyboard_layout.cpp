#include "platform/simulated/keyboard_layout.h"

#include <algorithm>
#include <array>

namespace glyma::simulated {

namespace {

// The character keys, row by row from the top left; the last one is the key beside the left Shift.
constexpr std::array<std::uint16_t, 48> characterKeys = {
    50, 18, 19, 20, 21, 23, 22, 26, 28, 25, 29, 27, 24, // digits
    12, 13, 14, 15, 17, 16, 32, 34, 31, 35, 33, 30, 42, // upper row
    0,  1,  2,  3,  5,  4,  38, 40, 37, 41, 39,         // home row
    6,  7,  8,  9,  11, 45, 46, 43, 47, 44, 10,         // lower row
};

struct Composition {
    char32_t deadKey, character, result;
};
constexpr auto compositions = std::to_array<Composition>({
    {U'´', U'e', U'é'},
    {U'´', U'a', U'á'},
    {U'´', U'E', U'É'},
    {U'´', U' ', U'´'},
    {U'^', U'e', U'ê'},
    {U'^', U'a', U'â'},
    {U'^', U'o', U'ô'},
    {U'^', U' ', U'^'},
    {U'`', U'e', U'è'},
    {U'`', U'a', U'à'},
    {U'`', U' ', U'`'},
});

// AltGr rows are as long as the others; \0 keys type nothing there.
constexpr std::u32string_view nothing;

} // namespace

const KeyboardLayout& KeyboardLayout::us() {
    static const KeyboardLayout layout{"us", U"`1234567890-=qwertyuiop[]\\asdfghjkl;'zxcvbnm,./<",
                                       U"~!@#$%^&*()_+QWERTYUIOP{}|ASDFGHJKL:\"ZXCVBNM<>?>", nothing,
                                       nothing};
    return layout;
}

const KeyboardLayout& KeyboardLayout::german() {
    using namespace std::string_view_literals;
    static const KeyboardLayout layout{
        "de",
        U"^1234567890ß´qwertzuiopü+#asdfghjklöäyxcvbnm,.-<",
        U"°!\"§$%&/()=?`QWERTZUIOPÜ*'ASDFGHJKLÖÄYXCVBNM;:_>",
        U"\0¹²³¼½¬{[]}\\\0@ł€¶ŧ←↓→øþ\0~\0æſðđŋħ\0ĸł\0\0»«¢„“”µ·…\0|"sv,
        U"^´`",
    };
    return layout;
}

const KeyboardLayout& KeyboardLayout::russian() {
    static const KeyboardLayout layout{"ru", U"ё1234567890-=йцукенгшщзхъ\\фывапролджэячсмитьбю.<",
                                       U"Ё!\"№;%:?*()_+ЙЦУКЕНГШЩЗХЪ/ФЫВАПРОЛДЖЭЯЧСМИТЬБЮ,>", nothing,
                                       nothing};
    return layout;
}

std::optional<Stroke> strokeOf(const KeyboardLayout& layout, std::uint16_t keyCode, bool shift, bool altGr) {
    if (keyCode == key::space)
        return Stroke{keyCode, shift, altGr, false, U' '};
    const auto found = std::ranges::find(characterKeys, keyCode);
    if (found == characterKeys.end())
        return std::nullopt;
    const auto& level = altGr ? layout.altGr : shift ? layout.shift : layout.plain;
    const auto index = static_cast<std::size_t>(found - characterKeys.begin());
    if (index >= level.size() || level[index] == 0)
        return std::nullopt;
    const bool isDead = !altGr && layout.deadKeys.find(level[index]) != std::u32string_view::npos;
    return Stroke{keyCode, shift, altGr, isDead, level[index]};
}

std::optional<Stroke> strokeFor(const KeyboardLayout& layout, char32_t character, bool asDeadKey) {
    if (character == U' ')
        return Stroke{key::space, false, false, false, U' '};
    for (const auto& [shift, altGr] :
         {std::pair(false, false), std::pair(true, false), std::pair(false, true)})
        for (const auto keyCode : characterKeys)
            if (const auto stroke = strokeOf(layout, keyCode, shift, altGr);
                stroke && stroke->character == character && stroke->isDeadKey == asDeadKey)
                return stroke;
    return std::nullopt;
}

std::optional<char32_t> compose(char32_t deadKey, char32_t character) {
    const auto found = std::ranges::find_if(compositions, [&](const Composition& composition) {
        return composition.deadKey == deadKey && composition.character == character;
    });
    return found == compositions.end() ? std::nullopt : std::optional(found->result);
}

std::optional<std::pair<char32_t, char32_t>> decompose(char32_t character) {
    const auto found = std::ranges::find(compositions, character, &Composition::result);
    return found == compositions.end() ? std::nullopt
                                       : std::optional(std::pair(found->deadKey, found->character));
}

} // namespace glyma::simulated
