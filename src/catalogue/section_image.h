#pragma once

#include "catalogue/search_section.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string_view>

namespace glyma {

/// The texts of the whole catalogue: what a search reads, without use.
struct CatalogueTexts {
    std::shared_ptr<const SearchSection> keyworded; ///< switched on, with keywords, in name order
    std::shared_ptr<const SearchSection> rest;      ///< switched on, without keywords, in name order
    std::int64_t popularityTotal = 0;
};

/// A file that holds texts exactly as they lie in memory. It is written for the machine that it is on: a file
/// of another byte order, version or key counts as absent, and so does a damaged one. \param key  tells what
/// the texts were made from. \return whether it was written. It appears whole or not at all.
bool writeImage(const std::filesystem::path& file, std::string_view key, const CatalogueTexts& texts);
/// Maps the file: only what a search touches is read.
std::optional<CatalogueTexts> mapImage(const std::filesystem::path& file, std::string_view key);

} // namespace glyma
