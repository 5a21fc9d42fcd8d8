#include "app/container.h"

#include "catalogue/catalogue_files.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace glyma {

namespace fs = std::filesystem;

namespace {

bool isSettingsFile(std::string_view name) {
    return name == "settings.json" || name == ".settings.json.new" ||
           name.starts_with("settings.json.damaged-");
}

std::vector<fs::path> settingsFiles(const fs::path& folder) {
    std::vector<fs::path> files;
    std::error_code error;
    for (fs::directory_iterator each(folder, error), end; !error && each != end; each.increment(error)) {
        std::error_code unknown;
        const bool isFile = each->is_symlink(unknown) || each->is_regular_file(unknown);
        if (isFile && isSettingsFile(each->path().filename().native()))
            files.push_back(each->path());
    }
    return files;
}

} // namespace

std::vector<fs::path> removeContainer(const xdg::Folders& folders, LoginItem& loginItem) {
    auto left = deleteCatalogue(folders.data);
    std::ranges::move(removeFiles(settingsFiles(folders.config)), std::back_inserter(left));
    if (!loginItem.disable())
        left.push_back(folders.autostart);
    return left;
}

} // namespace glyma
