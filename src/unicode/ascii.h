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

inline constexpr bool isAsciiUpper(char byte) {
    return byte >= 'A' && byte <= 'Z';
}
inline constexpr bool isAsciiLower(char byte) {
    return byte >= 'a' && byte <= 'z';
}
inline constexpr char asciiLower(char byte) {
    return isAsciiUpper(byte) ? static_cast<char>(byte + ('a' - 'A')) : byte;
}

/// Lower case of ASCII text, eight bytes at a time.
inline void lowerAscii(std::string_view text, char* result) {
    constexpr std::uint64_t ones = 0x0101010101010101u;
    std::size_t at = 0;
    for (; at + 8 <= text.size(); at += 8) {
        std::uint64_t word = 0;
        std::memcpy(&word, text.data() + at, sizeof word);
        // The additions set the high bit of each byte from 'A' on, and from the one after 'Z' on.
        const auto fromA = word + ones * (0x80 - 'A');
        const auto pastZ = word + ones * (0x80 - 'Z' - 1);
        word |= ((fromA & ~pastZ) & (ones * 0x80)) >> 2;
        std::memcpy(result + at, &word, sizeof word);
    }
    for (; at < text.size(); ++at)
        result[at] = asciiLower(text[at]);
}

} // namespace glyma::unicode
