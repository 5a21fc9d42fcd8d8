#pragma once

#include <cstdint>
#include <string_view>

namespace glyma {

/// The bytes that occur in a text, as bits: one for each of a to z and 0 to 9, the rest shared by all others.
/// A text whose mask lacks a bit of another's can contain neither that text nor its bytes in order.
using ByteMask = std::uint64_t;

/// Set when a character may take more than one byte: bytes above 0x7F, or the carriage return of CR LF.
inline constexpr ByteMask manyBytesBit = ByteMask{1} << 63;

inline constexpr int letterCount = 36;

/// 0 to 25 for a to z, 26 to 35 for 0 to 9, -1 for any other byte.
inline constexpr int letterIndex(char byte) {
    if (byte >= 'a' && byte <= 'z')
        return byte - 'a';
    if (byte >= '0' && byte <= '9')
        return 26 + (byte - '0');
    return -1;
}

inline constexpr ByteMask byteMask(char byte) {
    if (const auto letter = letterIndex(byte); letter >= 0)
        return ByteMask{1} << letter;
    const auto value = static_cast<unsigned char>(byte);
    const auto many = value >= 0x80 || byte == '\r' ? manyBytesBit : 0;
    return many | ByteMask{1} << (letterCount + value % 27);
}

inline constexpr ByteMask byteMask(std::string_view text) {
    ByteMask mask = 0;
    for (const auto byte : text)
        mask |= byteMask(byte);
    return mask;
}

inline constexpr bool covers(ByteMask whole, ByteMask part) {
    return (part & ~whole) == 0;
}

} // namespace glyma
