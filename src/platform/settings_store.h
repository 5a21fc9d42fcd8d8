#pragma once

#include <nlohmann/json_fwd.hpp>

#include <optional>
#include <string>
#include <string_view>

namespace glyma {

/// Where settings persist: one JSON value a key. Each change is on disk, whole, when the call returns; a
/// change that cannot be written is kept in memory and reported once in the log. Main thread for writing, any
/// for reading.
class SettingsStore {
public:
    virtual ~SettingsStore() = default;

    virtual std::optional<nlohmann::json> value(std::string_view key) const = 0;
    virtual void set(std::string_view key, nlohmann::json value) = 0;
    virtual void remove(std::string_view key) = 0;
};

} // namespace glyma
