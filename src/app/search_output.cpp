#include "app/search_output.h"

#include "unicode/text.h"

#include <nlohmann/json.hpp>
#include <unicode/uchar.h>

#include <algorithm>
#include <vector>

namespace glyma {

namespace {

constexpr std::size_t widestIcon = 12;
constexpr std::size_t widestName = 44;
constexpr std::string_view ellipsis = "…";

/// One column a byte.
bool isPlain(std::string_view text) {
    return std::ranges::all_of(text, [](char letter) { return letter >= ' ' && letter <= '~'; });
}

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

/// A space for what would move the cursor.
std::string_view inOneLine(std::string_view cluster) {
    const auto base = static_cast<UChar32>(unicode::firstScalar(cluster));
    const bool breaks = (U_MASK(u_charType(base)) & (U_GC_CC_MASK | U_GC_ZL_MASK | U_GC_ZP_MASK)) != 0;
    return breaks ? " " : cluster;
}

/// Appends a text as one line; what takes more than so many columns is cut and ends with an ellipsis.
/// \return the columns taken.
std::size_t appendField(std::string& line, std::string_view text, std::size_t columns) {
    if (text.size() <= columns && isPlain(text)) {
        line += text;
        return text.size();
    }
    std::size_t used = 0;
    auto cutPlace = line.size(); // with room for the ellipsis behind it
    std::size_t cutColumns = 0;
    for (const auto cluster : unicode::graphemes(text)) {
        const auto shown = inOneLine(cluster);
        used += clusterColumns(shown);
        if (used > columns) {
            line.resize(cutPlace);
            line += ellipsis;
            return cutColumns + 1;
        }
        line += shown;
        if (used < columns) {
            cutPlace = line.size();
            cutColumns = used;
        }
    }
    return used;
}

void appendKeywords(std::string& line, std::span<const std::string> keywords) {
    for (const auto& keyword : keywords) {
        line += &keyword == keywords.data() ? "" : ", ";
        appendField(line, keyword, std::string::npos);
    }
}

std::string_view shownCharacter(const CommandLineRow& row) {
    const std::string_view character = row.character;
    return character.starts_with(specialPrefix) ? "?" : character;
}

struct Field {
    Field(std::string_view whole, std::size_t widest)
        : columns(appendField(text, whole, widest)) {}
    void appendPadded(std::string& line, std::size_t width) const {
        line.append(text).append(width - columns, ' ');
    }

    std::string text;
    std::size_t columns;
};

struct Line {
    explicit Line(const CommandLineRow& row)
        : icon(shownCharacter(row), widestIcon)
        , name(row.name, widestName)
        , keywords(row.keywords) {}

    Field icon;
    Field name;
    std::span<const std::string> keywords;
};

} // namespace

std::size_t terminalColumns(std::string_view text) {
    if (isPlain(text))
        return text.size();
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
    const std::vector<Line> lines(rows.begin(), rows.end());
    std::size_t iconColumns = 2;
    std::size_t nameColumns = 0;
    for (const auto& line : lines) {
        iconColumns = std::max(iconColumns, line.icon.columns);
        nameColumns = std::max(nameColumns, line.name.columns);
    }
    std::string text;
    std::string whole;
    for (const auto& line : lines) {
        whole.clear();
        line.icon.appendPadded(whole, iconColumns + 2);
        line.name.appendPadded(whole, line.keywords.empty() ? line.name.columns : nameColumns + 2);
        appendKeywords(whole, line.keywords);
        if (width)
            appendField(text, whole, *width);
        else
            text += whole;
        text += '\n';
    }
    return text;
}

} // namespace glyma
