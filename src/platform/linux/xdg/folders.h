#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace glyma::xdg {

/// Looks an environment variable up; absent when it is not set.
using Environment = std::function<std::optional<std::string>(const char* name)>;

Environment processEnvironment();

/// Where the program keeps its things and finds those of others. Nothing is created here.
struct Folders {
    std::filesystem::path config;    ///< the settings
    std::filesystem::path data;      ///< the catalogue's store
    std::filesystem::path resources; ///< the reference files
    std::filesystem::path autostart; ///< what the session starts
    /// Where applications install their files, the user's own folder first.
    std::vector<std::filesystem::path> systemData;
    bool operator==(const Folders&) const = default;
};

/// The folders of the XDG base directory specification, each of the first three overridden by
/// GLYMA_CONFIG_DIR, GLYMA_DATA_DIR and GLYMA_RESOURCE_DIR. Relative XDG values are ignored, as that
/// specification asks; relative overrides count from the current folder. Without HOME the user database
/// tells. \param executable  the running program: its ../share/glyma holds the resources of an installed one.
Folders findFolders(const Environment& environment, const std::filesystem::path& executable);

/// The running program's own file; empty when the system does not tell.
std::filesystem::path executablePath();

} // namespace glyma::xdg
