#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace glyma {

/// The character with the modifier after each scalar that takes one; nothing else changes.
/// \param modifier  one of U+1F3FB to U+1F3FF, or none. Any thread.
std::string applySkinTone(std::string_view character, const std::optional<std::string>& modifier);

} // namespace glyma
