#pragma once

#include "charinfo/character_info.h"

#include <functional>
#include <string>
#include <vector>

namespace glyma {

/// A fact about a character, in words.
struct DetailRow {
    std::string label;
    std::string value;
    bool operator==(const DetailRow&) const = default;
};

/// Puts an English text of the program's into the user's language.
using Translate = std::function<std::string(const char* english)>;

/// The facts of a card below its name and code points, in the order in which they are shown. Dates in the
/// session's language and time zone.
std::vector<DetailRow> detailRows(const CharacterInfo& info, const Translate& translate);

} // namespace glyma
