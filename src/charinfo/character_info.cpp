#include "charinfo/character_info.h"

#include "unicode/text.h"

#include <fmt/format.h>

namespace glyma {

std::string_view describedPart(std::string_view character) {
    std::size_t end = 0;
    for (std::size_t count = 0; count < describedScalars && end < character.size(); ++count)
        unicode::nextScalar(character, end);
    return character.substr(0, end);
}

std::string utf8Bytes(std::string_view character) {
    std::string text;
    for (const char byte : character)
        text += fmt::format("{}{:02X}", text.empty() ? "" : " ", static_cast<unsigned char>(byte));
    return text;
}

std::string htmlEntities(std::string_view character) {
    std::string text;
    for (const auto scalar : unicode::scalars(character))
        text += fmt::format("&#x{:X};", static_cast<std::uint32_t>(scalar));
    return text;
}

std::string codePoints(std::string_view character) {
    std::string text;
    for (const auto scalar : unicode::scalars(character))
        text += fmt::format("{}U+{:04X}", text.empty() ? "" : " ", static_cast<std::uint32_t>(scalar));
    return text;
}

} // namespace glyma
