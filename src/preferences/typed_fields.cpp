#include "preferences/typed_fields.h"

#include "unicode/properties.h"
#include "unicode/text.h"

#include <fmt/ranges.h>

#include <algorithm>
#include <charconv>

namespace glyma {

namespace {

std::string_view trimmed(std::string_view text) {
    std::size_t begin = text.size();
    std::size_t end = 0;
    for (std::size_t offset = 0; offset < text.size();) {
        const auto start = offset;
        if (unicode::isWhiteSpace(unicode::nextScalar(text, offset)))
            continue;
        begin = std::min(begin, start);
        end = offset;
    }
    return end > begin ? text.substr(begin, end - begin) : std::string_view();
}

} // namespace

std::optional<std::int64_t> parseVisibleRows(std::string_view text) {
    // Other than people, from_chars knows no plus; "+-5" must not become -5.
    if (text.starts_with('+') && !text.starts_with("+-"))
        text.remove_prefix(1);
    std::int64_t rows = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), rows);
    const bool isNumber = error == std::errc() && end == text.data() + text.size();
    return isNumber && rows >= leastPickerRows && rows <= mostPickerRows ? std::optional(rows) : std::nullopt;
}

std::vector<std::string> splitKeywords(std::string_view text) {
    std::vector<std::string> keywords;
    while (!text.empty()) {
        const auto comma = std::min(text.find(','), text.size());
        if (const auto keyword = trimmed(text.substr(0, comma)); !keyword.empty())
            keywords.emplace_back(keyword);
        text.remove_prefix(std::min(comma + 1, text.size()));
    }
    return keywords;
}

std::string joinKeywords(const std::vector<std::string>& keywords) {
    return fmt::format("{}", fmt::join(keywords, ", "));
}

std::vector<UserReplacement> withSaved(std::vector<UserReplacement> list, const UserReplacement& snippet) {
    const auto place = std::ranges::find(list, snippet.id, &UserReplacement::id);
    if (place != list.end())
        *place = snippet;
    else
        list.push_back(snippet);
    return list;
}

std::vector<UserReplacement> without(std::vector<UserReplacement> list,
                                     const std::set<std::string>& identifiers) {
    std::erase_if(list, [&](const UserReplacement& snippet) { return identifiers.contains(snippet.id); });
    return list;
}

} // namespace glyma
