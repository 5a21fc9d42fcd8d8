#pragma once

#include <filesystem>
#include <optional>
#include <string_view>
#include <vector>

namespace glyma {

/// Finds the reference files that ship with the program: in the folder given (GLYMA_RESOURCE_DIR or the
/// installed or source folder), else the first regular, not hidden file of that name below its sub-folder
/// "Glyma/Data".
class ResourceLocator {
public:
    explicit ResourceLocator(std::filesystem::path folder)
        : folder_(std::move(folder)) {}

    const std::filesystem::path& folder() const { return folder_; }
    std::optional<std::filesystem::path> find(std::string_view name, std::string_view extension) const;

private:
    std::filesystem::path folder_;
};

} // namespace glyma
