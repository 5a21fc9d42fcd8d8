#include "text/insertion_plan.h"

#include "unicode/text.h"

#include <algorithm>

namespace glyma::insertion {

namespace {

std::ptrdiff_t units(std::string_view text) {
    return static_cast<std::ptrdiff_t>(unicode::utf16Length(text));
}

} // namespace

std::ptrdiff_t unitsToDelete(std::ptrdiff_t deleteCharacters, const std::optional<std::string>& expected) {
    const bool isCompletelyKnown =
        expected && static_cast<std::ptrdiff_t>(unicode::graphemeCount(*expected)) == deleteCharacters;
    return isCompletelyKnown ? units(*expected) : deleteCharacters;
}

TextRange deletionRange(std::ptrdiff_t caret, std::ptrdiff_t deleteUnits) {
    const auto from = std::max<std::ptrdiff_t>(caret - deleteUnits, 0);
    return {from, caret - from};
}

TextRange surroundings(std::ptrdiff_t caret, std::ptrdiff_t deleteUnits) {
    const auto start = std::max<std::ptrdiff_t>(caret - deleteUnits - 2, 0);
    return {start, std::min(caret - start + 2, deleteUnits + 4)};
}

Selection judge(std::string_view selected, const std::optional<std::string>& expected,
                std::ptrdiff_t deleteUnits, std::ptrdiff_t deleteLength) {
    const auto trusted = deleteLength >= deleteUnits ? Selection::good : Selection::unusable;
    if (expected && units(*expected) == deleteUnits)
        return selected.empty() || selected == *expected ? trusted : Selection::mismatched;
    if (!selected.empty() && units(selected) != deleteUnits)
        return Selection::wrong;
    return trusted;
}

std::optional<std::string> replaced(std::string_view value, TextRange range, std::string_view text) {
    if (range.location + range.length > units(value))
        return std::nullopt;
    const auto begin = unicode::utf8Offset(value, static_cast<std::size_t>(range.location));
    const auto end = unicode::utf8Offset(value, static_cast<std::size_t>(range.location + range.length));
    std::string result(value.substr(0, begin));
    result.append(text).append(value.substr(end));
    return result;
}

} // namespace glyma::insertion
