#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

/// The shortcuts that most names and queries can take. Any thread.
namespace glyma::unicode {

inline bool isAscii(std::string_view text) {
    constexpr std::uint64_t highBits = 0x8080808080808080u;
    const char* position = text.data();
    const char* const end = position + text.size();
    for (; end - position >= 8; position += 8) {
        std::uint64_t word = 0;
        std::memcpy(&word, position, sizeof word);
        if (word & highBits)
            return false;
    }
    for (; position != end; ++position) {
        if (static_cast<unsigned char>(*position) >= 0x80)
            return false;
    }
    return true;
}

inline constexpr char asciiLower(char byte) {
    return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte + ('a' - 'A')) : byte;
}

/// Space, tab, line feed, vertical tab, form feed or carriage return.
inline constexpr bool isAsciiSpace(char byte) {
    return byte == ' ' || (byte >= '\t' && byte <= '\r');
}

} // namespace glyma::unicode
