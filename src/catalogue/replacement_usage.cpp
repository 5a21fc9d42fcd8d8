#include "catalogue/replacement_usage.h"

#include "data/json_date.h"

#include <nlohmann/json.hpp>

namespace glyma {

namespace {

constexpr std::string_view key = "glymaUserReplacementUsage";

} // namespace

ReplacementUsage loadReplacementUsage(const SettingsStore& settings) {
    ReplacementUsage usage;
    try {
        if (const auto stored = settings.value(key))
            for (const auto& [character, record] : stored->get<std::map<std::string, nlohmann::json>>())
                usage[character] = {record.at("count").get<std::int64_t>(),
                                    fromJsonDate(record.at("lastUsed").get<double>())};
    } catch (const nlohmann::json::exception&) {
        return {};
    }
    return usage;
}

void saveReplacementUsage(SettingsStore& settings, const ReplacementUsage& usage) {
    auto stored = nlohmann::json::object();
    for (const auto& [character, record] : usage)
        stored[character] = {{"count", record.count}, {"lastUsed", toJsonDate(record.lastUsed)}};
    settings.set(key, std::move(stored));
}

} // namespace glyma
