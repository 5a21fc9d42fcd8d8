#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace glyma {

/// A fresh random UUID (version 4) in the canonical form: 36 characters, upper case. Any thread.
std::string makeUuid();

/// The canonical form of a UUID written with hyphens in either case; absent when the text is none.
std::optional<std::string> canonicalUuid(std::string_view text);

} // namespace glyma
