#include "unicode/host_name.h"

#include "unicode/ascii.h"

#include <unicode/bytestream.h>
#include <unicode/idna.h>

#include <algorithm>
#include <memory>

namespace glyma::unicode {

namespace {

constexpr std::size_t longestName = 253, longestLabel = 63; // RFC 1035

bool isLabel(std::string_view label) {
    return !label.empty() && label.size() <= longestLabel && std::ranges::all_of(label, [](char letter) {
        return (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z') ||
               (letter >= '0' && letter <= '9') || letter == '-' || letter == '_';
    });
}

std::optional<std::string> encoded(std::string_view name) {
    auto status = U_ZERO_ERROR;
    const std::unique_ptr<icu::IDNA> idna(icu::IDNA::createUTS46Instance(
        UIDNA_CHECK_BIDI | UIDNA_CHECK_CONTEXTJ | UIDNA_NONTRANSITIONAL_TO_ASCII, status));
    if (U_FAILURE(status))
        return std::nullopt;
    std::string result;
    icu::StringByteSink<std::string> sink(&result);
    icu::IDNAInfo info;
    idna->nameToASCII_UTF8({name.data(), static_cast<std::int32_t>(name.size())}, sink, info, status);
    return U_FAILURE(status) || info.hasErrors() ? std::nullopt : std::optional(result);
}

} // namespace

std::optional<std::string> asciiHostName(std::string_view name) {
    const auto ascii = isAscii(name) ? std::string(name) : encoded(name).value_or("");
    if (ascii.empty() || ascii.size() > longestName)
        return std::nullopt;
    for (std::string_view rest = ascii;;) {
        const auto dot = rest.find('.');
        if (!isLabel(rest.substr(0, dot)))
            return std::nullopt;
        if (dot == rest.npos)
            return ascii;
        rest.remove_prefix(dot + 1);
    }
}

} // namespace glyma::unicode
