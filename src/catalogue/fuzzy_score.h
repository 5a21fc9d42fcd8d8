#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace glyma {

/// How well the pattern's characters occur in the target in their order, each at its earliest place: 10 for
/// each that directly follows the one before, 5 for each at the start of a word, 20 when the target starts
/// with the pattern. \param pattern, target  folded, UTF-8; compared by grapheme clusters. \return nothing
/// when a character is missing. Any thread.
std::optional<std::int64_t> fuzzyScore(std::string_view pattern, std::string_view target);

} // namespace glyma
