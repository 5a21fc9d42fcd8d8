#include "catalogue/catalogue_index.h"

#include "catalogue/search_scores.h"

#include <algorithm>

namespace glyma {

namespace {

std::shared_ptr<const SearchSection> emptySection() {
    static const auto section = std::make_shared<const SearchSection>();
    return section;
}

std::int32_t popularityPoints(std::uint32_t rank, std::int64_t total) {
    if (rank == noRank)
        return 0;
    const auto share = static_cast<double>(rank) / static_cast<double>(std::max<std::int64_t>(total, 1));
    return static_cast<std::int32_t>((1.0 - share) * popularityScale);
}

} // namespace

CatalogueIndex::CatalogueIndex()
    : CatalogueIndex(nullptr, nullptr, nullptr, 0, {}) {}

CatalogueIndex::CatalogueIndex(std::shared_ptr<const SearchSection> keyworded,
                               std::shared_ptr<const SearchSection> personal,
                               std::shared_ptr<const SearchSection> rest, std::int64_t popularityTotal,
                               UseByEntry use)
    : sections_{std::move(keyworded), std::move(personal), std::move(rest)}
    , use_(std::move(use)) {
    for (auto index = 0u; index < sections_.size(); ++index) {
        if (!sections_[index])
            sections_[index] = emptySection();
        begins_[index + 1] = begins_[index] + sections_[index]->size();
    }
    auto popularity = std::make_shared<std::vector<std::int32_t>>();
    popularity->reserve(indexedSize());
    for (const auto* section : {&this->keyworded(), &this->personal()})
        for (const auto rank : section->arrays().rank) {
            popularity->push_back(popularityPoints(rank, popularityTotal));
            if (rank != noRank)
                rankLimit_ = std::max(rankLimit_, rank + 1);
        }
    popularity_ = std::move(popularity);

    for (std::uint32_t entry = 0; entry < this->personal().size(); ++entry)
        if (const auto hidden = this->rest().find(this->personal().character(entry)))
            hiddenRest_.push_back(*hidden);
    std::ranges::sort(hiddenRest_);
}

CatalogueIndex::Place CatalogueIndex::place(std::uint32_t number) const {
    const auto index = number < begins_[1] ? 0u : number < begins_[2] ? 1u : 2u;
    return {*sections_[index], number - begins_[index]};
}

std::string_view CatalogueIndex::character(std::uint32_t number) const {
    const auto [section, entry] = place(number);
    return section.character(entry);
}

std::string_view CatalogueIndex::name(std::uint32_t number) const {
    const auto [section, entry] = place(number);
    return section.name(entry);
}

std::vector<std::string_view> CatalogueIndex::keywords(std::uint32_t number) const {
    const auto [section, entry] = place(number);
    return section.keywords(entry);
}

std::string_view CatalogueIndex::blockName(std::uint32_t number) const {
    const auto [section, entry] = place(number);
    return section.blockName(entry);
}

std::vector<std::uint32_t> CatalogueIndex::findAll(std::string_view character) const {
    std::vector<std::uint32_t> found;
    for (auto index = 0u; index < sections_.size(); ++index)
        for (const auto entry : sections_[index]->findAll(character))
            found.push_back(begins_[index] + entry);
    return found;
}

std::optional<std::uint32_t> CatalogueIndex::findIndexed(std::string_view character) const {
    const auto found = findAll(character);
    return !found.empty() && isIndexed(found.front()) ? std::optional(found.front()) : std::nullopt;
}

EmojiEntry CatalogueIndex::entry(std::uint32_t number) const {
    const auto [section, local] = place(number);
    EmojiEntry entry;
    entry.character = section.character(local);
    entry.name = section.name(local);
    for (const auto keyword : section.keywords(local))
        entry.keywords.emplace_back(keyword);
    entry.unicodeBlock = section.blockName(local);
    entry.foldedName = section.foldedName(local);
    for (const auto keyword : fieldsOf(section.foldedKeywords(local)))
        entry.foldedKeywords.emplace_back(keyword);
    if (const auto* use = use_.find(number)) {
        entry.usageCount = use->count;
        entry.lastUsed = use->lastUsed;
    }
    if (const auto rank = section.rank(local); rank != noRank)
        entry.popularityRank = rank;
    entry.isCached = isIndexed(number);
    return entry;
}

} // namespace glyma
