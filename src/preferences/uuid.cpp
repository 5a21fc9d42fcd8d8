#include "preferences/uuid.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace glyma {

namespace {

constexpr std::size_t canonicalLength = 36;
constexpr std::string_view digits = "0123456789ABCDEF";

constexpr bool isHyphenPlace(std::size_t index) {
    return index == 8 || index == 13 || index == 18 || index == 23;
}

std::optional<char> upperCaseDigit(char letter) {
    if (letter >= 'a' && letter <= 'f')
        return static_cast<char>(letter - 'a' + 'A');
    if (digits.find(letter) == std::string_view::npos)
        return std::nullopt;
    return letter;
}

} // namespace

std::string UuidMaker::operator()() {
    std::string uuid(canonicalLength, '-');
    std::uint32_t bits = 0;
    int unused = 0;
    for (std::size_t index = 0; index < canonicalLength; ++index) {
        if (isHyphenPlace(index))
            continue;
        if (unused == 0) {
            bits = device_();
            unused = 8;
        }
        uuid[index] = digits[bits % 16];
        bits /= 16;
        --unused;
    }
    // RFC 9562: the version is the first digit of the third group, the variant the top two bits of the
    // fourth.
    uuid[14] = '4';
    uuid[19] = digits[8 + digits.find(uuid[19]) % 4];
    return uuid;
}

std::optional<std::string> canonicalUuid(std::string_view text) {
    if (text.size() != canonicalLength)
        return std::nullopt;
    std::string uuid(text);
    for (std::size_t index = 0; index < canonicalLength; ++index) {
        if (isHyphenPlace(index)) {
            if (text[index] != '-')
                return std::nullopt;
            continue;
        }
        const auto digit = upperCaseDigit(text[index]);
        if (!digit)
            return std::nullopt;
        uuid[index] = *digit;
    }
    return uuid;
}

} // namespace glyma
