#pragma once

#include "data/records.h"

#include <cstdint>
#include <expected>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace glyma {

/// What a search must read from the store when it has the texts from elsewhere: a read-only connection that
/// opens in a fraction of the time of a Store and checks nothing. One thread at a time.
class SearchReader {
public:
    template<typename Value>
    using Result = std::expected<Value, std::string>;

    /// Fails when the file is absent or no database.
    static Result<SearchReader> open(const std::filesystem::path& file);

    SearchReader(SearchReader&&) noexcept;
    SearchReader& operator=(SearchReader&&) noexcept;
    ~SearchReader();

    Result<bool> hasCharacters() const;
    Result<bool> hasEnabledBlock() const;
    /// See renewSearchStamp; none when the characters have changed since.
    Result<std::optional<std::string>> searchStamp() const;
    /// Each character that is switched on and was used; any order.
    Result<void> visitUses(const std::function<void(std::string_view character, std::int64_t count,
                                                    std::optional<Timestamp> lastUsed)>& visitor) const;
    /// Those whose term begins with the prefix.
    Result<std::vector<TermSelection>> termSelections(std::string_view prefix) const;

private:
    struct Implementation;
    explicit SearchReader(std::unique_ptr<Implementation> implementation);
    std::unique_ptr<Implementation> implementation_;
};

/// Gives the store's characters a new random name that it keeps until one is added, removed, renamed or
/// switched on or off; use does not count. What was derived from the characters can tell by it whether it
/// still holds.
std::expected<std::string, std::string> renewSearchStamp(const std::filesystem::path& storeFile);

} // namespace glyma
