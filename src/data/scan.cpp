#include "data/scan.h"

namespace glyma::scan {

std::string_view trimmed(std::string_view text) {
    std::size_t first = text.size();
    std::size_t last = 0;
    forEachRun(
        text, [](char32_t scalar) { return !unicode::isWhiteSpace(scalar); },
        [&](std::string_view word) {
            const auto offset = static_cast<std::size_t>(word.data() - text.data());
            first = std::min(first, offset);
            last = offset + word.size();
        });
    return first < last ? text.substr(first, last - first) : std::string_view{};
}

} // namespace glyma::scan
