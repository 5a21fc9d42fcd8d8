#pragma once

#include "data/resources.h"
#include "data/store.h"
#include "platform/font_coverage.h"
#include "preferences/log.h"

#include <cstdint>
#include <expected>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

namespace glyma {

struct ImportSummary {
    std::int64_t characters = 0;
    std::int64_t blocks = 0;
    bool operator==(const ImportSummary&) const = default;
};

/// Builds the catalogue from the reference files: parses them, drops what no installed font can draw, decides
/// what starts switched on and writes it all to the store. Blocking; any one thread. \param progress  told
/// the text of each of the nine phases as it begins. \param restore   run in the last phase ("Restoring user
/// data"). \return the figures, or why it was aborted. An import is written whole or not at all; a store that
/// another process
///         fills meanwhile is taken as it is.
struct ImportPipeline {
    const ResourceLocator& resources;
    FontCoverage& fonts;
    Log& log;
    std::function<void(std::string_view)> progress;
    std::function<void(Store&)> restore;

    std::expected<ImportSummary, std::string> run(Store& store) const;
};

} // namespace glyma
