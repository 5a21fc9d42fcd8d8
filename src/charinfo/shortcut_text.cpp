#include "charinfo/shortcut_text.h"

#include "unicode/text.h"

#include <fmt/format.h>
#include <unicode/locid.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <array>
#include <optional>

namespace glyma {

namespace {

struct Modifier {
    std::uint64_t flag;
    std::string_view sign;
    std::string_view spoken;
};

// In the order in which they are shown.
constexpr auto modifiers = std::to_array<Modifier>({
    {modifier::control, "⌃", "Control"},
    {modifier::option, "⌥", "Alt"},
    {modifier::shift, "⇧", "Shift"},
    {modifier::command, "⌘", "Super"},
});

struct KeyName {
    std::uint16_t code;
    std::string_view sign;
    std::string_view spoken;
};

constexpr auto keyNames = std::to_array<KeyName>({
    {36, "↩", "Return"}, {48, "⇥", "Tab"},        {49, "Space", "Space"}, {51, "⌫", "Backspace"},
    {76, "⌤", "Enter"},  {115, "↖", "Home"},      {116, "⇞", "Page Up"},  {117, "⌦", "Delete"},
    {119, "↘", "End"},   {121, "⇟", "Page Down"}, {123, "←", "Left"},     {124, "→", "Right"},
    {125, "↓", "Down"},  {126, "↑", "Up"},        {122, "F1", "F1"},      {120, "F2", "F2"},
    {99, "F3", "F3"},    {118, "F4", "F4"},       {96, "F5", "F5"},       {97, "F6", "F6"},
    {98, "F7", "F7"},    {100, "F8", "F8"},       {101, "F9", "F9"},      {109, "F10", "F10"},
    {103, "F11", "F11"}, {111, "F12", "F12"},
});

const KeyName* find(std::uint16_t keyCode) {
    const auto found = std::ranges::find(keyNames, keyCode, &KeyName::code);
    return found == keyNames.end() ? nullptr : &*found;
}

/// Not a control character, nor one by which some systems name function keys.
bool isShowable(std::string_view characters) {
    const auto first = unicode::firstScalar(characters);
    return first >= 0x20 && first != 0x7F && (first < 0xF700 || first > 0xF8FF);
}

std::string upperCased(std::string_view text) {
    std::string upper;
    icu::UnicodeString::fromUTF8({text.data(), static_cast<std::int32_t>(text.size())})
        .toUpper(icu::Locale::getRoot())
        .toUTF8String(upper);
    return upper;
}

} // namespace

std::string displayText(std::uint16_t keyCode, std::uint64_t flags, std::string_view characters) {
    std::string text;
    for (const auto& [flag, sign, spoken] : modifiers)
        if (flags & flag)
            text += sign;
    if (const auto* name = find(keyCode))
        return text.append(name->sign);
    return text + (isShowable(characters) ? upperCased(characters) : fmt::format("Key {}", keyCode));
}

std::string spokenText(const GlobalShortcut& shortcut, const Wording& word) {
    std::string text;
    std::string_view key = shortcut.display;
    for (const auto& [flag, sign, spoken] : modifiers)
        if (shortcut.modifierRawValue & flag) {
            text.append(word(std::string(spoken))).append("+");
            if (key.starts_with(sign))
                key.remove_prefix(sign.size());
        }
    const auto* name = find(shortcut.keyCode);
    return text.append(name ? word(std::string(name->spoken)) : std::string(key));
}

} // namespace glyma
