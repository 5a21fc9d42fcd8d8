#pragma once

#include "data/resources.h"
#include "data/store.h"
#include "platform/font_coverage.h"
#include "preferences/log.h"

#include <cstdint>
#include <expected>
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
/// what starts switched on, writes it all to the store and puts back what the user had taught. Blocking; any
/// one thread. All of it happens or nothing. Both calls return the figures, or why there are none.
struct ImportPipeline {
    const ResourceLocator& resources;
    FontCoverage& fonts;
    Log& log;
    /// Told the text of each of the nine phases as it begins; may be empty.
    std::function<void(std::string_view)> progress;

    /// Fills an empty store and restores the newest backup beside it. A store that another process fills
    /// meanwhile is taken as it is.
    std::expected<ImportSummary, std::string> run(Store& store) const;
    /// Replaces the catalogue of the store, keeping what the user taught it.
    std::expected<ImportSummary, std::string> rebuild(Store& store) const;
};

} // namespace glyma
