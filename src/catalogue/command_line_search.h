#pragma once

#include "catalogue/catalogue_values.h"
#include "data/resources.h"
#include "platform/settings_store.h"
#include "preferences/user_preferences.h"

#include <cstddef>
#include <expected>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace glyma {

/// Where a search outside the running program finds its catalogue. Nothing here is written but the search
/// image beside the store, and that only when it is missing or older than the store.
struct CommandLineCatalogue {
    std::filesystem::path storeFile;  ///< as StoreLifecycle::storeLocation() says
    const ResourceLocator& resources; ///< for the popularity ranking
    const SettingsStore& settings;    ///< for the learned use of snippets
    std::span<const UserReplacement> replacements;
    Timestamp now;
};

struct CommandLineQuery {
    std::string_view text;            ///< as typed, UTF-8
    bool fuzzy = false;               ///< the preference `useFuzzySearch`, or what the user asked for
    std::optional<std::size_t> limit; ///< at most so many rows; none: all
};

struct CommandLineRow {
    std::string character; ///< "special:random-emoji" and "special:random-unicode" for the special entries
    std::string name;
    std::vector<std::string> keywords;
    std::string unicodeBlock;
    RankingInfo ranking; ///< ranking.total() orders the rows
    bool operator==(const CommandLineRow&) const = default;
};

/// Both phases of a search in one go, in rank order; a use is not recorded. Reads the store read-only and
/// starts neither Qt nor a thread; about 3 ms for the whole catalogue. One call at a time. \return the rows;
/// an empty list for an empty query and for a store that does not exist or holds no character yet
///         (hasCatalogue tells); the error says why the store cannot be read.
std::expected<std::vector<CommandLineRow>, std::string>
searchFromCommandLine(const CommandLineCatalogue& catalogue, const CommandLineQuery& query);

/// Whether the store exists and holds a character: whether `glyma search` can answer without an import.
bool hasCatalogue(const std::filesystem::path& storeFile);

} // namespace glyma
