#pragma once

#include "platform/message.h"
#include "preferences/records.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace glyma {

/// How a shortcut is shown: "⌃⌥⇧⌘" as far as they are held, then the key.
/// \param characters  what the key types without Control, Option and Command, UTF-8.
std::string displayText(std::uint16_t keyCode, std::uint64_t flags, std::string_view characters);

/// How a shortcut is read out: "Control+Alt+Shift+Super+I", with the names that the keys have in the
/// language.
std::string spokenText(const GlobalShortcut& shortcut, const Wording& word = inEnglish);

} // namespace glyma
