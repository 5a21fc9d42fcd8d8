#include "unicode/text.h"

#include "unicode/ascii.h"

#include <fmt/format.h>
#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <limits>

namespace glyma::unicode {
namespace {

constexpr char32_t replacementCharacter = 0xFFFD;
constexpr char32_t variationSelector16 = 0xFE0F;

void append(std::string& text, char32_t scalar) {
    if (scalar < 0x80) {
        text.push_back(static_cast<char>(scalar));
        return;
    }
    std::uint8_t bytes[U8_MAX_LENGTH];
    int length = 0;
    UBool failed = false;
    U8_APPEND(bytes, length, U8_MAX_LENGTH, static_cast<UChar32>(scalar), failed);
    if (failed)
        append(text, replacementCharacter);
    else
        text.append(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(length));
}

std::size_t unitsOf(char32_t scalar) {
    return scalar > 0xFFFF ? 2 : 1;
}

char32_t straightened(char32_t scalar) {
    if (scalar >= 0x2018 && scalar <= 0x201B)
        return U'\'';
    if (scalar >= 0x201C && scalar <= 0x201F)
        return U'"';
    return scalar;
}

void appendQuoted(std::string& result, char32_t scalar) {
    switch (scalar) {
    case U'"':
        result += "\\\"";
        return;
    case U'\\':
        result += "\\\\";
        return;
    case U'\n':
        result += "\\n";
        return;
    case U'\r':
        result += "\\r";
        return;
    case U'\t':
        result += "\\t";
        return;
    case U'\0':
        result += "\\0";
        return;
    default:
        break;
    }
    const auto category = u_charType(static_cast<UChar32>(scalar));
    // A line or paragraph separator would break the log line as a control character does.
    if (category == U_CONTROL_CHAR || category == U_LINE_SEPARATOR || category == U_PARAGRAPH_SEPARATOR)
        result += fmt::format("\\u{{{:X}}}", static_cast<std::uint32_t>(scalar));
    else
        append(result, scalar);
}

} // namespace

char32_t nextScalar(std::string_view text, std::size_t& offset) {
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    auto scalar = UChar32{};
    U8_NEXT_OR_FFFD(bytes, offset, text.size(), scalar);
    return static_cast<char32_t>(scalar);
}

std::u32string scalars(std::string_view text) {
    std::u32string result;
    result.reserve(text.size());
    for (std::size_t position = 0; position < text.size();)
        result.push_back(nextScalar(text, position));
    return result;
}

char32_t firstScalar(std::string_view text) {
    if (text.empty())
        return 0;
    std::size_t position = 0;
    return nextScalar(text, position);
}

std::string fromScalars(std::u32string_view scalars) {
    std::string result;
    result.reserve(scalars.size());
    for (const auto scalar : scalars)
        append(result, scalar);
    return result;
}

std::string fromScalar(char32_t scalar) {
    std::string result;
    append(result, scalar);
    return result;
}

bool isWellFormed(std::string_view text) {
    if (isAscii(text))
        return true;
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    for (std::size_t position = 0; position < text.size();) {
        auto scalar = UChar32{};
        U8_NEXT(bytes, position, text.size(), scalar);
        if (scalar < 0)
            return false;
    }
    return true;
}

std::string sanitized(std::string_view text) {
    if (isWellFormed(text))
        return std::string(text);
    std::string result;
    result.reserve(text.size());
    for (std::size_t position = 0; position < text.size();)
        append(result, nextScalar(text, position));
    return result;
}

std::size_t utf16Length(std::string_view text) {
    if (isAscii(text))
        return text.size();
    std::size_t units = 0;
    for (std::size_t position = 0; position < text.size();)
        units += unitsOf(nextScalar(text, position));
    return units;
}

std::size_t utf8Offset(std::string_view text, std::size_t utf16Offset) {
    std::size_t position = 0;
    for (std::size_t units = 0; position < text.size() && units < utf16Offset;) {
        auto next = position;
        units += unitsOf(nextScalar(text, next));
        if (units > utf16Offset)
            break;
        position = next;
    }
    return position;
}

std::string_view utf16Substring(std::string_view text, std::size_t location, std::size_t length) {
    const auto end = length > std::numeric_limits<std::size_t>::max() - location
                         ? std::numeric_limits<std::size_t>::max()
                         : location + length;
    const auto first = utf8Offset(text, location);
    const auto last = utf8Offset(text, end);
    return text.substr(first, last - first);
}

std::string withoutVariationSelector16(std::string_view text) {
    static const auto selector = fromScalar(variationSelector16);
    std::string result(text);
    for (auto at = result.find(selector); at != std::string::npos; at = result.find(selector, at))
        result.erase(at, selector.size());
    return result;
}

std::string withStraightQuotes(std::string_view text) {
    if (isAscii(text))
        return std::string(text);
    std::string result;
    result.reserve(text.size());
    for (std::size_t position = 0; position < text.size();)
        append(result, straightened(nextScalar(text, position)));
    return result;
}

std::string quoted(std::string_view text) {
    std::string result;
    result.reserve(text.size() + 2);
    result.push_back('"');
    for (std::size_t position = 0; position < text.size();)
        appendQuoted(result, nextScalar(text, position));
    result.push_back('"');
    return result;
}

} // namespace glyma::unicode
