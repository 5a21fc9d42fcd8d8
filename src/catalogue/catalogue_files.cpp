#include "catalogue/catalogue_files.h"

#include "catalogue/catalogue_texts.h"
#include "data/store.h"
#include "data/whole_file.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <system_error>

namespace glyma {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view backupPrefix = "user-data-backup";
constexpr std::string_view backupExtension = ".json";

/// The files of the folder whose names fit; none when it cannot be listed.
template<typename Fits>
std::vector<fs::path> filesOf(const fs::path& folder, const Fits& fits) {
    std::vector<fs::path> files;
    std::error_code error;
    for (fs::directory_iterator entry(folder, error); !error && entry != fs::directory_iterator();
         entry.increment(error)) {
        std::error_code unknown;
        if (fits(entry->path().filename().string()) && !entry->is_directory(unknown))
            files.push_back(entry->path());
    }
    return files;
}

bool isBackup(std::string_view name) {
    return name.starts_with(backupPrefix) && name.ends_with(backupExtension);
}

bool isUnfinishedBackup(std::string_view name) {
    const auto end = name.rfind('.');
    return end != std::string_view::npos && isBackup(name.substr(0, end)) &&
           isUnfinished(name, name.substr(0, end));
}

void append(std::vector<fs::path>& files, std::vector<fs::path> more) {
    std::ranges::move(more, std::back_inserter(files));
}

} // namespace

fs::path storeFile(const fs::path& dataFolder) {
    return dataFolder / "Glyma.store";
}

std::vector<fs::path> storeFiles(const fs::path& dataFolder) {
    const auto store = storeFile(dataFolder);
    return {store, store.string() + "-wal", store.string() + "-shm", Store::damageMark(store)};
}

std::vector<fs::path> userDataBackups(const fs::path& dataFolder) {
    return filesOf(dataFolder, isBackup);
}

std::vector<fs::path> replaceableFiles(const fs::path& dataFolder) {
    const auto image = imageLocation(storeFile(dataFolder)).filename().string();
    return filesOf(dataFolder, [&](std::string_view name) {
        return name == image || isUnfinished(name, image) || isUnfinishedBackup(name);
    });
}

std::vector<fs::path> catalogueFiles(const fs::path& dataFolder) {
    auto files = storeFiles(dataFolder);
    std::erase_if(files, [](const fs::path& file) {
        std::error_code error;
        return !fs::exists(fs::symlink_status(file, error));
    });
    const auto asidePrefix = storeFile(dataFolder).filename().string() + ".";
    append(files, filesOf(dataFolder, [&](std::string_view name) { return name.starts_with(asidePrefix); }));
    append(files, replaceableFiles(dataFolder));
    append(files, userDataBackups(dataFolder));
    return files;
}

std::vector<fs::path> removeFiles(const std::vector<fs::path>& files) {
    std::vector<fs::path> left;
    for (const auto& file : files) {
        std::error_code error;
        fs::remove(file, error);
        if (error)
            left.push_back(file);
    }
    return left;
}

std::vector<fs::path> deleteCatalogue(const fs::path& dataFolder) {
    return removeFiles(catalogueFiles(dataFolder));
}

std::string shortened(const fs::path& path) {
    const auto* const home = std::getenv("HOME");
    auto text = path.string();
    if (home == nullptr || *home == '\0' || !text.starts_with(std::string(home) + "/"))
        return text;
    return "~" + text.substr(std::string_view(home).size());
}

} // namespace glyma
