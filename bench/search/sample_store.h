#pragma once

#include "data/store.h"

#include <filesystem>

namespace glyma::bench {

/// A store with the whole catalogue of the reference files, as if the fonts could draw everything; all of it
/// is switched on. Ends the program with a message when it cannot be made.
Store makeSampleStore(const std::filesystem::path& file, const std::filesystem::path& resources);

} // namespace glyma::bench
