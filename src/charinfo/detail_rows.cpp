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

Message usage(const CharacterInfo& info, const Wording& word) {
    auto times = info.usageCount == 1 ? Message::tr("1 time")
                                      : Message::tr("%1 times").arg(std::to_string(info.usageCount));
    if (!info.lastUsed)
        return times;
    return Message::tr("%1 · last %2").arg(word(times)).arg(abbreviatedDate(*info.lastUsed));
}

std::string bytesText(const CharacterInfo& info) {
    auto text = utf8Bytes(describedPart(info.character));
    return info.omittedScalars > 0 ? text + " …" : text;
}

Message library(std::optional<bool> isEnabled) {
    if (!isEnabled)
        return Message::tr("Not in library");
    return *isEnabled ? Message::tr("Enabled in picker") : Message::tr("Disabled in picker");
}

} // namespace

std::vector<DetailRow> detailRows(const CharacterInfo& info, const Wording& word) {
    std::vector<DetailRow> rows;
    const auto add = [&](const Message& label, std::string value) {
        rows.push_back({word(label), std::move(value)});
    };
    if (!info.block.empty())
        add(Message::tr("Block"), info.block);
    if (!info.keywords.empty())
        add(Message::tr("Keywords"), fmt::format("{}", fmt::join(info.keywords, ", ")));
    add(Message::tr("UTF-8"), bytesText(info));
    if (info.appliedToneName || info.supportsSkinTone)
        add(Message::tr("Skin tone"),
            word(info.appliedToneName ? Message(*info.appliedToneName) : Message::tr("supported")));
    if (info.usageCount >= 1)
        add(Message::tr("Usage"), word(usage(info, word)));
    if (info.popularityRank)
        add(Message::tr("Popularity"),
            word(Message::tr("#%1 of the most-used emoji").arg(std::to_string(*info.popularityRank + 1))));
    add(Message::tr("Library"), word(library(info.isEnabled)));
    return rows;
}

} // namespace glyma
