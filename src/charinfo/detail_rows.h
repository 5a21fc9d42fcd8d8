#pragma once

#include "charinfo/character_info.h"
#include "platform/message.h"

#include <string>
#include <vector>

namespace glyma {

/// A fact about a character, in words.
struct DetailRow {
    std::string label;
    std::string value;
    bool operator==(const DetailRow&) const = default;
};

/// The facts of a card below its name and code points, in the order in which they are shown. Dates in the
/// session's language and time zone.
std::vector<DetailRow> detailRows(const CharacterInfo& info, const Wording& word);

} // namespace glyma
