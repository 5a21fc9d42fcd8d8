#include "catalogue/user_data_files.h"

#include "catalogue/catalogue_files.h"
#include "data/user_data_backup.h"
#include "data/whole_file.h"

#include <fmt/format.h>

#include <algorithm>
#include <system_error>

namespace glyma {

namespace fs = std::filesystem;

namespace {

using Done = std::expected<void, std::string>;

/// A hundred times what the whole of Unicode and years of use amount to.
constexpr std::size_t sizeLimit = 32 * 1024 * 1024;

fs::file_time_type changeOf(const fs::path& file) {
    std::error_code error;
    const auto time = fs::last_write_time(file, error);
    return error ? fs::file_time_type::min() : time;
}

/// A backup written while the clock was ahead must not outlive its successor.
void makeNewest(const fs::path& backup, const std::optional<fs::path>& formerNewest) {
    if (!formerNewest || *formerNewest == backup)
        return;
    std::error_code error;
    if (const auto former = changeOf(*formerNewest); former >= changeOf(backup))
        fs::last_write_time(backup, former + std::chrono::seconds(1), error);
}

Done restore(Store& store, const fs::path& file, Log& log) {
    const auto bytes = readWholeFile(file, sizeLimit);
    if (!bytes)
        return std::unexpected(fmt::format("{}: {}", shortened(file), bytes.error()));
    const auto backup = decodeUserDataBackup(*bytes);
    if (!backup)
        return std::unexpected(fmt::format("{}: {}", shortened(file), backup.error().text()));
    if (backup->version != UserDataBackup::currentVersion)
        return std::unexpected(fmt::format("{}: version {}, not {}", shortened(file), backup->version,
                                           UserDataBackup::currentVersion));
    if (auto restored = store.restoreUserData(*backup); !restored)
        return restored;
    log.debug("Glyma: restored user data — {} char usages, {} term selections, {} block states",
              backup->charUsage.size(), backup->termSelections.size(), backup->blockStates.size());
    return {};
}

} // namespace

std::optional<fs::path> newestUserDataBackup(const fs::path& dataFolder) {
    const auto backups = userDataBackups(dataFolder);
    const auto newest = std::ranges::max_element(backups, {}, changeOf);
    return newest == backups.end() ? std::nullopt : std::optional(*newest);
}

Done exportUserDataBackup(const Store& store, Timestamp now, Log& log) {
    const auto backup = store.userData(now);
    if (!backup)
        return std::unexpected(backup.error());
    const auto bytes = encode(*backup);
    if (bytes.size() > sizeLimit)
        return std::unexpected(
            fmt::format("a backup of more than {} bytes could not be read again", sizeLimit));
    const auto folder = store.file().parent_path();
    const auto file = folder / backupFileName(now);
    const auto formerNewest = newestUserDataBackup(folder);
    if (auto written = replaceWholeFile(file, bytes); !written)
        return std::unexpected(fmt::format("{}: {}", shortened(file), written.error()));
    makeNewest(file, formerNewest);
    syncFolder(folder);
    log.debug("Glyma: exported user data backup — {} used chars, {} term selections, {} blocks",
              backup->charUsage.size(), backup->termSelections.size(), backup->blockStates.size());
    return {};
}

void restoreNewestUserData(Store& store, Log& log) {
    const auto newest = newestUserDataBackup(store.file().parent_path());
    if (!newest)
        return;
    if (const auto restored = restore(store, *newest, log); !restored)
        log.debug("Glyma: ⚠️ user data restore failed — {}", restored.error());
}

} // namespace glyma
