#pragma once

#include "catalogue/catalogue_values.h"
#include "catalogue/learned_use.h"
#include "catalogue/search_section.h"

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace glyma {

/// The entries that a search reads, in their order and with their use: those with keywords, then those of the
/// user's own (used characters without keywords, the special entries, the snippets), then, when the second
/// phase has joined them, the rest of the catalogue. Entries are numbered through. A value: changing means
/// making another; lists of results keep the one that they were made from.
class CatalogueIndex {
public:
    CatalogueIndex();
    /// The sections may be null.
    CatalogueIndex(std::shared_ptr<const SearchSection> keyworded,
                   std::shared_ptr<const SearchSection> personal, std::shared_ptr<const SearchSection> rest,
                   std::int64_t popularityTotal, UseByEntry use);

    const SearchSection& keyworded() const { return *sections_[0]; }
    const SearchSection& personal() const { return *sections_[1]; }
    const SearchSection& rest() const { return *sections_[2]; }
    const std::shared_ptr<const SearchSection>& restSection() const { return sections_[2]; }

    std::uint32_t personalBegin() const { return begins_[1]; }
    std::uint32_t restBegin() const { return begins_[2]; }
    /// Number of entries without the rest.
    std::uint32_t indexedSize() const { return begins_[2]; }
    bool isIndexed(std::uint32_t entry) const { return entry < begins_[2]; }

    std::string_view character(std::uint32_t entry) const;
    std::string_view name(std::uint32_t entry) const;
    std::vector<std::string_view> keywords(std::uint32_t entry) const;
    std::string_view blockName(std::uint32_t entry) const;
    /// Of an indexed entry.
    std::uint32_t rank(std::uint32_t entry) const {
        return entry < begins_[1] ? sections_[0]->rank(entry) : sections_[1]->rank(entry - begins_[1]);
    }
    /// More than every rank but noRank.
    std::uint32_t rankLimit() const { return rankLimit_; }
    std::int32_t popularityBonus(std::uint32_t entry) const {
        return entry < popularity_->size() ? (*popularity_)[entry] : 0;
    }
    const UseByEntry& use() const { return use_; }
    void setUse(const EntryUse& use) { use_.set(use); }
    /// The entries of the rest, by their number in it and in order, whose character is indexed already.
    const std::vector<std::uint32_t>& hiddenRest() const { return hiddenRest_; }

    /// The first indexed entry with this character.
    std::optional<std::uint32_t> findIndexed(std::string_view character) const;
    /// All entries with this character.
    std::vector<std::uint32_t> findAll(std::string_view character) const;

    /// Without ranking information.
    EmojiEntry entry(std::uint32_t number) const;

private:
    struct Place {
        const SearchSection& section;
        std::uint32_t entry;
    };
    Place place(std::uint32_t number) const;

    std::array<std::shared_ptr<const SearchSection>, 3> sections_;
    std::array<std::uint32_t, 4> begins_{}; ///< of each section, and the end
    std::uint32_t rankLimit_ = 1;
    std::vector<std::uint32_t> hiddenRest_;
    std::shared_ptr<const std::vector<std::int32_t>> popularity_;
    UseByEntry use_;
};

} // namespace glyma
