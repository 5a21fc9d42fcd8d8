#pragma once

#include "preferences/records.h"

#include <nlohmann/json_fwd.hpp>

#include <optional>
#include <vector>

/// The settings' records as JSON: objects with the field names as keys, lists as arrays.
namespace glyma {

nlohmann::json encode(const UserReplacement& record);
nlohmann::json encode(const ExcludedApp& record);
nlohmann::json encode(const ExcludedWebsite& record);
nlohmann::json encode(const GlobalShortcut& record);

/// Absent when a field is missing, has the wrong type or is out of range; further keys are ignored.
template<typename Record>
std::optional<Record> decode(const nlohmann::json& value);
template<>
std::optional<UserReplacement> decode(const nlohmann::json& value);
template<>
std::optional<ExcludedApp> decode(const nlohmann::json& value);
template<>
std::optional<ExcludedWebsite> decode(const nlohmann::json& value);
template<>
std::optional<GlobalShortcut> decode(const nlohmann::json& value);

/// Absent when the value is no array or one of its records does not decode.
template<typename Record>
std::optional<std::vector<Record>> decodeList(const nlohmann::json& value);

template<typename Record>
nlohmann::json encodeList(const std::vector<Record>& records);

} // namespace glyma
