#pragma once

#include "catalogue/popularity.h"
#include "catalogue/section_image.h"
#include "data/resources.h"
#include "data/store.h"

#include <expected>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

/// Where the texts of the catalogue come from: the image beside the store while it fits, else the store's
/// rows.
namespace glyma {

/// "Glyma.search-image" beside the store.
std::filesystem::path imageLocation(const std::filesystem::path& storeFile);

/// \param stamp  the store's search stamp.
std::optional<CatalogueTexts> textsOfImage(const std::filesystem::path& storeFile, const std::string& stamp,
                                           const ResourceLocator& resources);

/// The characters with keywords, or the store's error.
std::expected<std::shared_ptr<const SearchSection>, std::string> readKeyworded(const Store& store,
                                                                               const Popularity& popularity);
/// The characters without keywords.
std::expected<std::shared_ptr<const SearchSection>, std::string> readRest(const Store& store);

/// Reads both from the store and writes the image; a store that cannot be written to still gives its texts.
std::expected<CatalogueTexts, std::string> readTextsAndWriteImage(const std::filesystem::path& storeFile,
                                                                  const Popularity& popularity,
                                                                  const ResourceLocator& resources);

} // namespace glyma
