#include "data/resources.h"

#include <string>
#include <system_error>

namespace glyma {
namespace {

namespace fs = std::filesystem;

bool isRegularFile(const fs::path& path) {
    std::error_code error;
    return fs::is_regular_file(path, error);
}

bool isHidden(const fs::path& path) {
    return path.filename().native().starts_with('.');
}

std::optional<fs::path> findBelow(const fs::path& folder, const std::string& fileName) {
    std::error_code error;
    fs::recursive_directory_iterator entry(folder, fs::directory_options::skip_permission_denied, error);
    for (; !error && entry != fs::recursive_directory_iterator(); entry.increment(error)) {
        if (isHidden(entry->path()))
            entry.disable_recursion_pending();
        else if (entry->path().filename() == fileName && isRegularFile(entry->path()))
            return entry->path();
    }
    return std::nullopt;
}

} // namespace

std::optional<fs::path> ResourceLocator::find(std::string_view name, std::string_view extension) const {
    const auto fileName = std::string(name) + "." + std::string(extension);
    const auto direct = folder_ / fileName;
    if (isRegularFile(direct))
        return direct;
    return findBelow(folder_ / "Glyma" / "Data", fileName);
}

} // namespace glyma
