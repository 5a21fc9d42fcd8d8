#pragma once

#include "data/records.h"

#include <cstddef>
#include <span>
#include <string>
#include <vector>

namespace glyma {

/// What a row of UnicodeChar holds beyond the record.
struct DerivedTexts {
    std::string keywords; ///< JSON array
    std::string foldedName;
    std::string foldedKeywords; ///< each piece of keywordsRaw folded, joined with ","
};

DerivedTexts deriveTexts(const UnicodeChar& character);

/// Rows in the order in which a new store keeps them: those with keywords first, each half in name order, so
/// that reading one half in name order is one sweep. Of equal characters the last one stays. Uses several
/// threads.
struct OrderedRow {
    const UnicodeChar* character = nullptr;
    DerivedTexts texts;
};
std::vector<OrderedRow> orderedRows(std::span<const UnicodeChar> characters);

/// The positions 0 to names.size() - 1 in the order of the names; equal names keep their order.
std::vector<std::size_t> nameOrder(std::span<const std::string> names);

} // namespace glyma
