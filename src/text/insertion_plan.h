#pragma once

#include "platform/accessibility.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

/// What an insertion through accessibility decides, apart from the calls it makes. Lengths and offsets are
/// UTF-16 units unless their name says otherwise.
namespace glyma::insertion {

/// How many units stand for the characters to delete. The count is in grapheme clusters; it is the number of
/// units too unless the typed text, when it is known, holds characters of several units.
std::ptrdiff_t unitsToDelete(std::ptrdiff_t deleteCharacters, const std::optional<std::string>& expected);

/// The units before the caret that are to go; shorter than asked for at the start of the text.
TextRange deletionRange(std::ptrdiff_t caret, std::ptrdiff_t deleteUnits);

/// The deletion with two units on either side.
TextRange surroundings(std::ptrdiff_t caret, std::ptrdiff_t deleteUnits);

enum class Selection {
    good,
    mismatched, ///< not the text that was expected: wrong and unusable
    wrong,      ///< not of the length that was expected: wrong and unusable
    unusable,   ///< cannot be trusted, but not known to be wrong
};

/// Judges what the application says is selected after the deletion range was.
/// \param selected  empty when the application does not tell.
/// \param deleteLength  length of the range that was selected.
Selection judge(std::string_view selected, const std::optional<std::string>& expected,
                std::ptrdiff_t deleteUnits, std::ptrdiff_t deleteLength);

/// The value with a range replaced, or nothing when the range does not lie within it.
std::optional<std::string> replaced(std::string_view value, TextRange range, std::string_view text);

} // namespace glyma::insertion
