#include "app/update_page.h"

#include <fmt/format.h>

namespace glyma {

namespace {

/// RFC 3986: what needs no encoding anywhere in an address.
bool isUnreserved(char letter) {
    return (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z') ||
           (letter >= '0' && letter <= '9') ||
           std::string_view("-._~").find(letter) != std::string_view::npos;
}

std::string percentEncoded(std::string_view text) {
    std::string encoded;
    for (const char letter : text)
        if (isUnreserved(letter))
            encoded += letter;
        else
            encoded += fmt::format("%{:02X}", static_cast<unsigned char>(letter));
    return encoded;
}

} // namespace

std::string updatePageAddress(std::string_view host, std::string_view version) {
    while (host.ends_with('/'))
        host.remove_suffix(1);
    return fmt::format("{}/projects/glyma/update/?v={}", host,
                       version.empty() ? "0" : percentEncoded(version));
}

} // namespace glyma
