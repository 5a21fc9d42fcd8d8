#include "picker/qt/row_content.h"

#include "catalogue/skin_tone.h"
#include "unicode/text.h"

#include <fmt/ranges.h>

#include <string_view>

namespace glyma::qt {

namespace {

constexpr std::size_t longestIconText = 2;
constexpr std::size_t longestDetail = 160;

/// The text in one line: line ends and tabs become a space or a visible mark.
std::string oneLine(std::string_view text) {
    std::string result;
    for (const auto cluster : unicode::graphemes(unicode::firstGraphemes(text, longestDetail))) {
        if (cluster == "\n" || cluster == "\r\n" || cluster == "\r")
            result += " ⏎ ";
        else
            result += cluster == "\t" ? " " : cluster;
    }
    return result;
}

std::string keywordText(const std::optional<std::string_view>& keyword) {
    return keyword ? "… " + std::string(*keyword) : std::string();
}

RowContent snippetContent(const EmojiEntry& entry, const QueryMatch& match) {
    RowContent content;
    content.iconKind = unicode::graphemeCount(entry.character) <= longestIconText
                           ? RowContent::Icon::character
                           : RowContent::Icon::snippet;
    content.icon = entry.character;
    content.name = match.runs(entry.name);
    content.detail = oneLine(entry.character);
    content.keyword = fmt::format("{}", fmt::join(entry.keywords, ", "));
    return content;
}

RowContent characterContent(const EmojiEntry& entry, const QueryMatch& match, const RowOptions& options) {
    RowContent content;
    content.icon = applySkinTone(entry.character, options.skinToneModifier);
    if (options.isAltHeld)
        content.icon = unicode::withoutVariationSelector16(content.icon);
    content.name = match.runs(entry.name);
    content.keyword = keywordText(match.matchedKeyword(entry.name, entry.keywords));
    return content;
}

RowContent contentOf(const EmojiEntry& entry, const QueryMatch& match, const RowOptions& options) {
    return entry.unicodeBlock == userReplacementsBlock ? snippetContent(entry, match)
                                                       : characterContent(entry, match, options);
}

RowContent contentOf(const SpecialEntry& entry, const QueryMatch& match, const RowOptions&) {
    RowContent content;
    content.iconKind =
        entry.id.starts_with("random") ? RowContent::Icon::random : RowContent::Icon::character;
    content.icon = "?";
    content.name = match.runs(entry.name);
    content.keyword = keywordText(match.matchedKeyword(entry.name, entry.keywords));
    return content;
}

} // namespace

RowContent rowContent(const PickerItem& item, const QueryMatch& match, const RowOptions& options) {
    return std::visit(
        [&](const auto& entry) {
            auto content = contentOf(entry, match, options);
            if (options.showRankingInfo && entry.rankingInfo)
                content.ranking = entry.rankingInfo->displayText();
            return content;
        },
        item);
}

std::optional<bool> randomPoolOf(const PickerItem& item) {
    const auto* special = std::get_if<SpecialEntry>(&item);
    if (!special || !special->id.starts_with("random"))
        return std::nullopt;
    return special->id == "random-emoji";
}

} // namespace glyma::qt
