#pragma once

#include "platform/accessibility.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace glyma::atspi {

/// How an application's toolkit deviates from what the bus promises; measured, see the toolkits by name in
/// the source. The bus promises: offsets in code points, screen coordinates, an answer to every call.
struct Toolkit {
    enum class OffsetUnit { codePoint, utf16 };
    enum class LengthUnit { bytes, utf16 };

    OffsetUnit offsets = OffsetUnit::codePoint;
    /// U+FEFF stands after each astral character, which so counts twice.
    bool padsAstralCharacters = false;
    /// Unit of the length that goes with an inserted text.
    LengthUnit insertLength = LengthUnit::bytes;
    /// Inserting and deleting do what they say.
    bool edits = false;
    /// Inserting and deleting are offered, and selecting works, but they do nothing.
    bool selectsOnly = false;
    /// A selection may be made long after it was asked for.
    bool selectsLate = false;
    bool answersAddSelection = true;
    bool knowsScreenCoordinates = true;
    /// Paragraphs are objects of their own, marked in their parent's text by U+FFFC.
    bool nestsText = false;
    bool operator==(const Toolkit&) const = default;
};

/// \param name, version  as the application tells them: "gtk" "3.24.38", "GTK" "4.8.3", "Qt" "6.4.2",
/// "Gecko", ...
Toolkit toolkitNamed(std::string_view name, std::string_view version);

/// The text as it is, from the text as the toolkit gives it.
std::string plainText(const Toolkit& toolkit, std::string text);

/// UTF-16 units of the text that stands before an offset of the toolkit.
/// \param before  the toolkit's text up to the offset; not looked at where the toolkit counts UTF-16 units.
std::ptrdiff_t utf16Offset(const Toolkit& toolkit, std::ptrdiff_t offset, std::string_view before);

/// The toolkit's offset for a number of UTF-16 units; past the end gives the end, inside a surrogate pair its
/// start. \param text  the toolkit's text from its start, at least that many units or all of it.
std::ptrdiff_t toolkitOffset(const Toolkit& toolkit, std::ptrdiff_t utf16, std::string_view text);

/// Length of a plain text (UTF-8) in the toolkit's offsets.
std::ptrdiff_t offsetLength(const Toolkit& toolkit, std::string_view text);
/// Length of a plain text as inserting wants it.
std::ptrdiff_t insertLength(const Toolkit& toolkit, std::string_view text);

} // namespace glyma::atspi
