#include "app/info_output.h"

#include "charinfo/detail_rows.h"
#include "charinfo/stand_in.h"

#include <fmt/chrono.h>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>

namespace glyma {

namespace {

using Json = nlohmann::ordered_json;

template<typename Value>
Json orNull(const std::optional<Value>& value) {
    return value ? Json(*value) : Json(nullptr);
}

Json timeAsJson(const std::optional<Timestamp>& time) {
    if (!time)
        return nullptr;
    return fmt::format("{:%Y-%m-%dT%H:%M:%SZ}", fmt::gmtime(Timestamp::clock::to_time_t(*time)));
}

Json asJson(const CharacterInfo& info) {
    auto scalars = Json::array();
    for (const auto& scalar : info.scalars)
        scalars.push_back({{"value", static_cast<std::uint32_t>(scalar.value)},
                           {"hex", scalar.hex},
                           {"name", scalar.name}});
    return {{"char", info.character},
            {"name", info.name},
            {"block", info.block},
            {"keywords", info.keywords},
            {"scalars", scalars},
            {"omittedScalars", info.omittedScalars},
            {"utf8", utf8Bytes(describedPart(info.character))},
            {"isEmoji", info.isEmoji},
            {"supportsSkinTone", info.supportsSkinTone},
            {"appliedToneName", orNull(info.appliedToneName)},
            {"usageCount", info.usageCount},
            {"lastUsed", timeAsJson(info.lastUsed)},
            {"isEnabled", orNull(info.isEnabled)},
            {"popularityRank", orNull(info.popularityRank)}};
}

/// Nothing that the terminal would act on or not show.
std::string shown(std::string_view character) {
    const auto described = describedPart(character);
    const auto standIn = invisibleStandIn(described);
    return standIn.empty() ? withCarrier(described) : fmt::format("[{}]", standIn);
}

void appendLine(std::string& text, std::string_view label, std::size_t width, std::string_view value) {
    text += fmt::format("    {:<{}}  {}\n", label, width, value);
}

} // namespace

std::string characterInfosAsJson(std::span<const CharacterInfo> infos) {
    std::string text = "[";
    for (const auto& info : infos) {
        text += text.size() == 1 ? "\n  " : ",\n  ";
        text += asJson(info).dump(-1, ' ', false, Json::error_handler_t::replace);
    }
    return text + (infos.empty() ? "]\n" : "\n]\n");
}

std::string characterInfosAsText(std::span<const CharacterInfo> infos) {
    std::string text;
    for (const auto& info : infos) {
        text += fmt::format("{}{}  {}\n", text.empty() ? "" : "\n", shown(info.character), info.name);
        const auto rows = detailRows(info, inEnglish);
        std::size_t width = 0;
        for (const auto& row : rows)
            width = std::max(width, row.label.size());
        for (const auto& scalar : info.scalars)
            width = std::max(width, scalar.hex.size());
        for (const auto& scalar : info.scalars)
            appendLine(text, scalar.hex, width, scalar.name);
        if (info.omittedScalars > 0)
            appendLine(text, "", width, fmt::format("and {} more", info.omittedScalars));
        for (const auto& [label, value] : rows)
            appendLine(text, label, width, value);
    }
    return text;
}

} // namespace glyma
