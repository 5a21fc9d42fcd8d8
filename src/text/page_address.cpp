#include "text/page_address.h"

#include <algorithm>

namespace glyma {

namespace {

bool isAsciiLetter(char character) {
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
}

bool isSchemeCharacter(char character) {
    return isAsciiLetter(character) || (character >= '0' && character <= '9') || character == '+' ||
           character == '-' || character == '.';
}

/// What follows "scheme://" up to the path, query or fragment (RFC 3986, section 3).
std::string_view authority(std::string_view address) {
    const auto colon = address.find(':');
    const auto slashes = address.find("//");
    if (slashes == std::string_view::npos)
        return {};
    const bool hasScheme = colon != std::string_view::npos && colon > 0 && colon + 1 == slashes;
    if (!hasScheme && slashes != 0)
        return {};
    if (hasScheme && (!isAsciiLetter(address.front()) ||
                      !std::ranges::all_of(address.substr(0, colon), isSchemeCharacter)))
        return {};
    const auto rest = address.substr(slashes + 2);
    return rest.substr(0, rest.find_first_of("/?#"));
}

} // namespace

std::string pageHostOf(std::string_view address) {
    if (std::ranges::any_of(address, [](unsigned char byte) { return byte <= ' ' || byte == 0x7F; }))
        return {};
    auto host = authority(address);
    if (const auto at = host.rfind('@'); at != std::string_view::npos)
        host.remove_prefix(at + 1);
    if (host.starts_with('[')) {
        const auto end = host.find(']');
        return end == std::string_view::npos ? std::string() : std::string(host.substr(1, end - 1));
    }
    host = host.substr(0, host.find(':'));
    if (host.starts_with("www."))
        host.remove_prefix(4);
    return std::string(host);
}

} // namespace glyma
