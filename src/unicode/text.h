#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

/// Text is UTF-8 in std::string everywhere; ill-formed bytes count as U+FFFD. All functions: any thread.
namespace glyma::unicode {

/// The scalar at a UTF-8 offset before the end; the offset moves past it.
char32_t nextScalar(std::string_view text, std::size_t& offset);
/// The scalars of a text.
std::u32string scalars(std::string_view text);
/// The first scalar, or 0 for an empty text.
char32_t firstScalar(std::string_view text);
std::string fromScalars(std::u32string_view scalars);
std::string fromScalar(char32_t scalar);
bool isWellFormed(std::string_view text);
/// A text given as ill-formed or well-formed UTF-8, with every ill-formed sequence replaced by U+FFFD.
std::string sanitized(std::string_view text);

/// Extended grapheme clusters (UAX #29), as views into the text.
std::vector<std::string_view> graphemes(std::string_view text);
std::size_t graphemeCount(std::string_view text);
/// Calls `visit` with one cluster after the other until it returns false. Needs no memory for the others.
void visitGraphemes(std::string_view text, const std::function<bool(std::string_view cluster)>& visit);
/// The first `count` grapheme clusters, or all of them.
std::string_view firstGraphemes(std::string_view text, std::size_t count);
std::string_view lastGraphemes(std::string_view text, std::size_t count);
/// The text without its last grapheme cluster.
std::string_view withoutLastGrapheme(std::string_view text);

/// Length in UTF-16 code units.
std::size_t utf16Length(std::string_view text);
/// The UTF-8 offset of a UTF-16 offset; past the end gives the end, inside a surrogate pair gives its start.
std::size_t utf8Offset(std::string_view text, std::size_t utf16Offset);
/// `length` UTF-16 units from `location`, both clamped to the text.
std::string_view utf16Substring(std::string_view text, std::size_t location, std::size_t length);

/// The text without any U+FE0F, the variation selector that asks for emoji presentation.
std::string withoutVariationSelector16(std::string_view text);
/// The text with each typographic quote (U+201C to U+201F, U+2018 to U+201B) as the ASCII one.
std::string withStraightQuotes(std::string_view text);
/// Lower case of the root locale.
std::string lowercased(std::string_view text);
/// The search folding rule: lower case, diacritics removed, typographic quotes straightened.
std::string fold(std::string_view text);
/// In double quotes with backslash escapes, for log lines.
std::string quoted(std::string_view text);

} // namespace glyma::unicode
