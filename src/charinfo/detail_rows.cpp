#include "charinfo/detail_rows.h"

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <unicode/datefmt.h>

#include <memory>

namespace glyma {

namespace {

/// Such as "Mar 5, 2026".
std::string abbreviatedDate(Timestamp time) {
    const std::unique_ptr<icu::DateFormat> format(
        icu::DateFormat::createDateInstance(icu::DateFormat::kMedium));
    if (!format)
        return {};
    const auto sinceEpoch = std::chrono::duration_cast<Milliseconds>(time.time_since_epoch());
    icu::UnicodeString date;
    format->format(static_cast<UDate>(sinceEpoch.count()), date);
    std::string text;
    date.toUTF8String(text);
    return text;
}

std::string usageText(const CharacterInfo& info, const Translate& translate) {
    auto text = fmt::format("{} {}", info.usageCount, translate(info.usageCount == 1 ? "time" : "times"));
    if (info.lastUsed)
        text.append(translate(" · last ")).append(abbreviatedDate(*info.lastUsed));
    return text;
}

std::string bytesText(const CharacterInfo& info) {
    auto text = utf8Bytes(describedPart(info.character));
    return info.omittedScalars > 0 ? text + " …" : text;
}

const char* libraryText(std::optional<bool> isEnabled) {
    return !isEnabled ? "Not in library" : *isEnabled ? "Enabled in picker" : "Disabled in picker";
}

} // namespace

std::vector<DetailRow> detailRows(const CharacterInfo& info, const Translate& translate) {
    std::vector<DetailRow> rows;
    const auto add = [&](const char* label, std::string value) {
        rows.push_back({translate(label), std::move(value)});
    };
    if (!info.block.empty())
        add("Block", info.block);
    if (!info.keywords.empty())
        add("Keywords", fmt::format("{}", fmt::join(info.keywords, ", ")));
    add("UTF-8", bytesText(info));
    if (info.appliedToneName || info.supportsSkinTone)
        add("Skin tone", info.appliedToneName.value_or(translate("supported")));
    if (info.usageCount >= 1)
        add("Usage", usageText(info, translate));
    if (info.popularityRank)
        add("Popularity",
            fmt::format("#{}{}", *info.popularityRank + 1, translate(" of the most-used emoji")));
    add("Library", translate(libraryText(info.isEnabled)));
    return rows;
}

} // namespace glyma
