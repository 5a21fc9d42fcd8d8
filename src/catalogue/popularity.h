#pragma once

#include "data/resources.h"
#include "preferences/log.h"

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>

namespace glyma {

/// How popular which emoji are.
struct Popularity {
    std::map<std::string, std::uint32_t, std::less<>> ranks; ///< by character without U+FE0F; 0 is the first
    std::int64_t total = 0;                                  ///< length of the list, duplicates included

    /// \param character  with or without U+FE0F.
    /// \return noRank when it is not in the list.
    std::uint32_t rankOf(std::string_view character) const;
};

/// Reads "emoji-popularity.json"; empty when it is missing or damaged.
/// \param log  told what happened; may be null.
Popularity loadPopularity(const ResourceLocator& resources, Log* log);

/// Changes when the file does.
std::string popularityFingerprint(const ResourceLocator& resources);

} // namespace glyma
