#pragma once

#include "unicode/properties.h"
#include "unicode/text.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <optional>
#include <string_view>

/// The small scanners that the readers of the reference files share. Views into the text given. Any thread.
namespace glyma::scan {

/// Calls `visit` with each piece between separators, empty ones included.
template<typename Visit>
void forEachPiece(std::string_view text, std::string_view separators, Visit&& visit) {
    for (;;) {
        const auto end = text.find_first_of(separators);
        visit(text.substr(0, end));
        if (end == std::string_view::npos)
            return;
        text.remove_prefix(end + 1);
    }
}

/// Calls `visit` with each line that is not empty; a line ends with LF, CR or both.
template<typename Visit>
void forEachLine(std::string_view text, Visit&& visit) {
    while (!text.empty()) {
        auto line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        if (line.find('\r') == std::string_view::npos) {
            if (!line.empty())
                visit(line);
            continue;
        }
        forEachPiece(line, "\r", [&](std::string_view piece) {
            if (!piece.empty())
                visit(piece);
        });
    }
}

/// Cuts off and returns what stands before the separator, or everything when there is none.
inline std::string_view takeField(std::string_view& text, char separator) {
    const auto field = text.substr(0, text.find(separator));
    text.remove_prefix(std::min(field.size() + 1, text.size()));
    return field;
}

/// The number, with at most one sign; nothing else may stand around it.
inline std::optional<std::int64_t> hexadecimal(std::string_view text) {
    if (text.starts_with('+')) {
        text.remove_prefix(1);
        if (text.starts_with('-'))
            return std::nullopt;
    }
    std::int64_t value = 0;
    const auto* const end = text.data() + text.size();
    const auto [last, error] = std::from_chars(text.data(), end, value, 16);
    if (error != std::errc{} || last != end)
        return std::nullopt;
    return value;
}

/// Without white space at either end.
std::string_view trimmed(std::string_view text);

/// Calls `visit` with each longest run of scalars that satisfy the predicate.
template<typename Predicate, typename Visit>
void forEachRun(std::string_view text, Predicate&& belongs, Visit&& visit) {
    std::size_t start = 0;
    std::size_t at = 0;
    while (at < text.size()) {
        const auto before = at;
        if (belongs(unicode::nextScalar(text, at)))
            continue;
        if (before > start)
            visit(text.substr(start, before - start));
        start = at;
    }
    if (at > start)
        visit(text.substr(start));
}

} // namespace glyma::scan
