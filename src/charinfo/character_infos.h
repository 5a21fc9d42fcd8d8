#pragma once

#include "catalogue/popularity.h"
#include "charinfo/character_info.h"
#include "charinfo/scalar_names.h"
#include "data/character_reader.h"

#include <filesystem>
#include <optional>
#include <string_view>
#include <vector>

namespace glyma {

/// Finds out what there is to know about the characters of a text: from the catalogue's store as it is at
/// that moment, from the popularity ranking and from Unicode itself. Where the store cannot be read (while
/// the first import runs) the rest still answers. One thread at a time.
class CharacterInfos {
public:
    /// \param storeFile  as StoreLifecycle::storeLocation() says.
    /// \param resources  outlives it.
    CharacterInfos(std::filesystem::path storeFile, const ResourceLocator& resources);

    /// The distinct characters of the text in the order in which they come, without control characters, up
    /// to `limit`. Takes memory for those only, however long the text is. \param text  UTF-8.
    std::vector<CharacterInfo> buildInfos(std::string_view text, std::size_t limit);
    /// One for each of the first `describedScalars` scalars of the text.
    std::vector<ScalarInfo> scalarInfos(std::string_view text);

private:
    CharacterInfo describe(std::string_view character, const std::optional<CharacterReader>& store);
    std::string derivedName(const CharacterInfo& info);

    std::filesystem::path storeFile_;
    const ResourceLocator& resources_;
    ScalarNames names_;
    std::optional<Popularity> popularity_;
};

} // namespace glyma
