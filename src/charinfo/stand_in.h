#pragma once

#include <string>
#include <string_view>

namespace glyma {

/// What is drawn, in a dashed frame, for a character of which nothing would be seen: the abbreviation by
/// which it is known ("ZWJ", "RLO", "NBSP"); empty for a character that is visible. \param character  one
/// grapheme cluster, UTF-8.
std::string invisibleStandIn(std::string_view character);

/// What is drawn in its place for a character that no font has: its code point ("1FAEA").
std::string missingGlyphStandIn(std::string_view character);

/// The character with a dotted circle to carry it where it is a mark without a letter of its own.
std::string withCarrier(std::string_view character);

} // namespace glyma
