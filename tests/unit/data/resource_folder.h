#pragma once

#include "data/resources.h"
#include "platform/simulated/services.h"
#include "preferences/debug_config.h"
#include "preferences/log.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

namespace glyma::test {

/// A folder of reference files that lasts as long as the test.
class ResourceFolder {
public:
    ResourceFolder() {
        auto pattern = (std::filesystem::temp_directory_path() / "glyma-resources-XXXXXX").string();
        path_ = mkdtemp(pattern.data());
    }
    ~ResourceFolder() { std::filesystem::remove_all(path_); }
    ResourceFolder(const ResourceFolder&) = delete;
    ResourceFolder& operator=(const ResourceFolder&) = delete;

    const std::filesystem::path& path() const { return path_; }
    ResourceLocator locator() const { return ResourceLocator(path_); }
    std::filesystem::path write(const std::filesystem::path& name, std::string_view content) const {
        std::filesystem::create_directories((path_ / name).parent_path());
        std::ofstream(path_ / name, std::ios::binary) << content;
        return path_ / name;
    }

private:
    std::filesystem::path path_;
};

inline const ResourceLocator shippedFiles{std::filesystem::path(GLYMA_SOURCE_DIR) / "resources"};

/// A log that remembers its lines, debug messages included.
struct RecordingLog {
    RecordingLog() { config.setDebugLogsEnabled(true); }

    simulated::SimulatedLog sink;
    simulated::SimulatedSettings settings;
    DebugConfig config{settings};
    Log log{sink, config};
};

} // namespace glyma::test
