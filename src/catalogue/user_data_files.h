#pragma once

#include "data/store.h"
#include "preferences/log.h"

#include <expected>
#include <filesystem>
#include <optional>
#include <string>

/// The user's data on its way from a store that goes to the one that takes its place.
namespace glyma {

/// The backup with the latest modification date, whatever its name says; of equal dates the first one listed.
std::optional<std::filesystem::path> newestUserDataBackup(const std::filesystem::path& dataFolder);

/// Writes what the user taught to a new backup beside the store, which then is the newest one and safely on
/// disk. \return why there is none.
std::expected<void, std::string> exportUserDataBackup(const Store& store, Timestamp now, Log& log);

/// Restores the newest backup beside the store, when there is one. A backup that cannot be used is reported
/// in the log, changes nothing and stays where it is.
void restoreNewestUserData(Store& store, Log& log);

} // namespace glyma
