#pragma once

#include "charinfo/character_info.h"

#include <span>
#include <string>

namespace glyma {

/// An array of objects with the fields of CharacterInfo under their names, `character` as "char", and "utf8".
/// What is unknown is null; times are UTC, ISO 8601.
std::string characterInfosAsJson(std::span<const CharacterInfo> infos);

/// A paragraph a character: itself and its name, its code points, what else is known.
std::string characterInfosAsText(std::span<const CharacterInfo> infos);

} // namespace glyma
