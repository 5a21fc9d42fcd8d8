#pragma once

#include "data/resources.h"

#include <expected>
#include <filesystem>
#include <string>
#include <string_view>

namespace glyma {

/// A reference file as it was read. Its problems are worded here, so that they always name the file and the
/// remedy.
struct ResourceText {
    std::filesystem::path path;
    std::string text; ///< well-formed UTF-8

    /// "Blocks.txt in /usr/share/glyma holds no blocks: reinstall Glyma or set GLYMA_RESOURCE_DIR"
    std::string problem(std::string_view what) const;
};

/// Reads a reference file whole. Blocking; any thread.
std::expected<ResourceText, std::string> readResource(const ResourceLocator& resources, std::string_view name,
                                                      std::string_view extension);

} // namespace glyma
