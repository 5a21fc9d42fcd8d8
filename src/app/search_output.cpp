#include "app/search_output.h"

#include "unicode/text.h"

#include <fmt/ranges.h>
#include <nlohmann/json.hpp>
#include <unicode/uchar.h>

#include <algorithm>
#include <vector>

namespace glyma {

namespace {

constexpr std::size_t widestIcon = 12;
constexpr std::size_t widestName = 44;
constexpr std::string_view ellipsis = "…";

std::size_t clusterColumns(std::string_view cluster) {
    const auto scalars = unicode::scalars(cluster);
    if (scalars.find(U'\uFE0F') != scalars.npos)
        return 2;
    const auto base = static_cast<UChar32>(scalars.front());
    const auto type = U_MASK(u_charType(base));
    if ((type & (U_GC_MN_MASK | U_GC_ME_MASK | U_GC_CF_MASK | U_GC_CC_MASK)) != 0)
        return 0;
    // Flags are emoji, but not wide as single scalars.
    const auto width = u_getIntPropertyValue(base, UCHAR_EAST_ASIAN_WIDTH);
    const bool isWide =
        width == U_EA_WIDE || width == U_EA_FULLWIDTH || u_hasBinaryProperty(base, UCHAR_EMOJI_PRESENTATION);
    return isWide ? 2 : 1;
}

/// Without characters that would move the cursor.
std::string inOneLine(std::string_view text) {
    std::string line;
    for (const auto cluster : unicode::graphemes(text)) {
        const auto base = static_cast<UChar32>(unicode::firstScalar(cluster));
        const bool breaks = (U_MASK(u_charType(base)) & (U_GC_CC_MASK | U_GC_ZL_MASK | U_GC_ZP_MASK)) != 0;
        line += breaks ? std::string_view(" ") : cluster;
    }
    return line;
}

std::string cut(std::string_view text, std::size_t columns) {
    if (terminalColumns(text) <= columns)
        return std::string(text);
    std::string result;
    std::size_t used = 1;
    for (const auto cluster : unicode::graphemes(text)) {
        used += clusterColumns(cluster);
        if (used > columns)
            break;
        result += cluster;
    }
    return result.append(ellipsis);
}

std::string padded(std::string text, std::size_t columns) {
    const auto used = terminalColumns(text);
    return text.append(columns > used ? columns - used : 0, ' ');
}

struct Line {
    std::string icon;
    std::string name;
    std::string keywords;
};

Line makeLine(const CommandLineRow& row) {
    const bool isSpecial = std::string_view(row.character).starts_with(specialPrefix);
    return {.icon = cut(isSpecial ? "?" : inOneLine(row.character), widestIcon),
            .name = cut(inOneLine(row.name), widestName),
            .keywords = inOneLine(fmt::format("{}", fmt::join(row.keywords, ", ")))};
}

} // namespace

std::size_t terminalColumns(std::string_view text) {
    std::size_t columns = 0;
    for (const auto cluster : unicode::graphemes(text))
        columns += clusterColumns(cluster);
    return columns;
}

std::string searchResultsAsJson(std::span<const CommandLineRow> rows) {
    std::string text = "[";
    for (const auto& row : rows) {
        const nlohmann::ordered_json object{
            {"char", row.character},           {"name", row.name},
            {"keywords", row.keywords},        {"block", row.unicodeBlock},
            {"text", row.ranking.textScore},   {"popularity", row.ranking.popularityBonus},
            {"usage", row.ranking.usageBonus}, {"term", row.ranking.termBonus},
            {"cache", row.ranking.cacheBonus}, {"total", row.ranking.total()},
        };
        text += text.size() == 1 ? "\n  " : ",\n  ";
        text += object.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
    }
    return text + (rows.empty() ? "]\n" : "\n]\n");
}

std::string searchResultsAsText(std::span<const CommandLineRow> rows, std::optional<std::size_t> width) {
    std::vector<Line> lines;
    std::size_t iconColumns = 2;
    std::size_t nameColumns = 0;
    for (const auto& row : rows) {
        const auto& line = lines.emplace_back(makeLine(row));
        iconColumns = std::max(iconColumns, terminalColumns(line.icon));
        nameColumns = std::max(nameColumns, terminalColumns(line.name));
    }
    std::string text;
    for (const auto& [icon, name, keywords] : lines) {
        auto line = padded(icon, iconColumns) + "  ";
        line += keywords.empty() ? name : padded(name, nameColumns) + "  " + keywords;
        text += (width ? cut(line, *width) : line) + "\n";
    }
    return text;
}

} // namespace glyma
