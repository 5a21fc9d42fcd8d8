#pragma once

#include "platform/key_event.h"

#include <nlohmann/json_fwd.hpp>

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace glyma {

using PasteChords = std::map<std::string, KeyChord, std::less<>>;

/// "Ctrl+V", "Ctrl+Shift+V" or "Shift+Insert" in upper or lower case; absent for any other text.
std::optional<KeyChord> parsePasteChord(std::string_view text);

/// The user's table: an object of application identifier to chord text. What does not parse is left out.
PasteChords parsePasteChords(const nlohmann::json& value);

/// The chord with which an application pastes the clipboard; Ctrl+V for every application that is not known
/// to differ. \param identifier  desktop-entry id or lower-cased window class.
KeyChord defaultPasteChord(std::string_view identifier);

} // namespace glyma
