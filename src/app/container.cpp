#include "app/container.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace glyma {

namespace fs = std::filesystem;

namespace {

bool isAnyOf(std::string_view name, std::initializer_list<std::string_view> names) {
    return std::ranges::find(names, name) != names.end();
}

bool beginsWithAnyOf(std::string_view name, std::initializer_list<std::string_view> beginnings) {
    return std::ranges::any_of(beginnings,
                               [name](std::string_view beginning) { return name.starts_with(beginning); });
}

bool isStoreFile(std::string_view name) {
    return isAnyOf(name, {"Glyma.store", "Glyma.store-wal", "Glyma.store-shm", "Glyma.store-journal",
                          "Glyma.search-image"}) ||
           beginsWithAnyOf(name, {"Glyma.store.damaged-", "Glyma.store.replaced-"});
}

bool isBackup(std::string_view name) {
    return name.starts_with("user-data-backup") && name.ends_with(".json");
}

bool isSettingsFile(std::string_view name) {
    return isAnyOf(name, {"settings.json", ".settings.json.new"}) ||
           name.starts_with("settings.json.damaged-");
}

void collect(const fs::path& folder, bool (*isOurs)(std::string_view), std::vector<fs::path>& files) {
    std::error_code error;
    for (fs::directory_iterator each(folder, error), end; !error && each != end; each.increment(error)) {
        std::error_code unknown;
        const bool isFile = each->is_symlink(unknown) || each->is_regular_file(unknown);
        if (isFile && isOurs(each->path().filename().native()))
            files.push_back(each->path());
    }
}

} // namespace

std::vector<fs::path> containerFiles(const xdg::Folders& folders) {
    std::vector<fs::path> files;
    collect(
        folders.data, [](std::string_view name) { return isStoreFile(name) || isBackup(name); }, files);
    collect(folders.config, isSettingsFile, files);
    return files;
}

void removeContainer(const xdg::Folders& folders) {
    std::error_code ignored;
    for (const auto& file : containerFiles(folders))
        fs::remove(file, ignored);
}

} // namespace glyma
