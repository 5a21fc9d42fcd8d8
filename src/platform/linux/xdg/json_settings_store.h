#pragma once

#include "platform/log_sink.h"
#include "platform/settings_store.h"

#include <nlohmann/json.hpp>

#include <expected>
#include <filesystem>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

namespace glyma::xdg {

/// The settings as one JSON object in the file "settings.json", readable by the user alone.
///
/// A change replaces the file as a whole and keeps what another process of the program has changed in it
/// since. A file that is no JSON object is set aside as "settings.json.damaged-" and the time when the first
/// change is written; until then it stays where it is and every setting is at its default. A file that is a
/// symbolic link stays one.
class JsonSettingsStore : public SettingsStore {
public:
    /// \param folder  made at the first change.
    JsonSettingsStore(const std::filesystem::path& folder, LogSink& log);

    std::optional<nlohmann::json> value(std::string_view key) const override;
    void set(std::string_view key, nlohmann::json value) override;
    void remove(std::string_view key) override;

    /// Takes over what other processes have written since; a file that cannot be read changes nothing.
    void readAgain();

    const std::filesystem::path& file() const { return file_; }
    /// What is wrong with the file now, for people; empty when nothing is.
    std::string problem() const;

private:
    /// New values by key; none removes the key.
    using Changes = std::map<std::string, std::optional<nlohmann::json>>;

    void apply(std::string_view key, std::optional<nlohmann::json> value);
    std::expected<void, std::string> write();

    std::filesystem::path file_;
    LogSink& log_;
    mutable std::mutex mutex_;
    nlohmann::json settings_;
    Changes unwritten_;
    std::string readProblem_;
    std::string writeProblem_;
};

} // namespace glyma::xdg
