#include "catalogue/section_builder.h"

#include "catalogue/byte_scan.h"
#include "catalogue/text_matcher.h"

#include <algorithm>
#include <numeric>

namespace glyma {

namespace {

/// Without the byte that ends fields, which only ill-formed text can contain.
void appendField(std::vector<char>& to, std::string_view field) {
    std::ranges::copy_if(field, std::back_inserter(to), [](char byte) { return byte != fieldEnd; });
    to.push_back(fieldEnd);
}

std::uint32_t sizeOf(const std::vector<char>& bytes) {
    return static_cast<std::uint32_t>(bytes.size());
}

} // namespace

SectionArrays SectionBuilder::Storage::arrays() const {
    return {folded, nameStart,  keywordsStart, entryOfChunk, nameMask, keywordsMask, letterScores,
            shown,  shownStart, block,         blockNames,   rank,     byCharacter};
}

SectionBuilder::SectionBuilder()
    : storage_(std::make_unique<Storage>()) {
    storage_->folded.push_back(fieldEnd);
}

std::uint16_t SectionBuilder::blockNumber(std::string_view name) {
    if (const auto known = blockNumbers_.find(name); known != blockNumbers_.end())
        return known->second;
    const auto number = static_cast<std::uint16_t>(blockNumbers_.size());
    blockNumbers_.emplace(name, number);
    appendField(storage_->blockNames, name);
    return number;
}

void SectionBuilder::add(const SectionEntry& entry) {
    auto& s = *storage_;
    s.nameStart.push_back(sizeOf(s.folded));
    appendField(s.folded, entry.foldedName);
    s.keywordsStart.push_back(sizeOf(s.folded));
    ByteMask keywordsMask = 0;
    for (const auto keyword : entry.foldedKeywords) {
        appendField(s.folded, keyword);
        keywordsMask |= byteMask(keyword);
    }
    s.nameMask.push_back(byteMask(entry.foldedName));
    s.keywordsMask.push_back(keywordsMask);

    s.shownStart.push_back(sizeOf(s.shown));
    appendField(s.shown, entry.character);
    appendField(s.shown, entry.name);
    for (const auto keyword : entry.keywords)
        appendField(s.shown, keyword);
    s.block.push_back(blockNumber(entry.unicodeBlock));
    s.rank.push_back(entry.rank);
}

void SectionBuilder::finishIndexes() {
    auto& s = *storage_;
    const auto end = sizeOf(s.folded);
    s.nameStart.push_back(end);
    s.shownStart.push_back(sizeOf(s.shown));
    s.folded.insert(s.folded.end(), scanPadding, fieldEnd);

    std::uint32_t entry = 0;
    for (std::uint32_t place = 0; !s.rank.empty() && place < end; place += 64) {
        while (s.nameStart[entry + 1] <= place)
            ++entry;
        s.entryOfChunk.push_back(entry);
    }

    s.byCharacter.resize(s.rank.size());
    std::iota(s.byCharacter.begin(), s.byCharacter.end(), 0u);
    const auto character = [&](std::uint32_t of) {
        const std::string_view fields(s.shown.data() + s.shownStart[of],
                                      s.shownStart[of + 1] - s.shownStart[of]);
        return fields.substr(0, fields.find(fieldEnd));
    };
    std::ranges::stable_sort(s.byCharacter, {}, character);
}

std::shared_ptr<const SearchSection> SectionBuilder::build(bool withLetterScores) {
    finishIndexes();
    std::shared_ptr<Storage> storage = std::move(storage_);
    if (withLetterScores) {
        const SearchSection plain(storage->arrays(), storage);
        auto scores = letterScores(plain);
        storage->letterScores = std::move(scores);
    }
    auto section = std::make_shared<const SearchSection>(storage->arrays(), storage);
    *this = SectionBuilder();
    return section;
}

std::shared_ptr<const SearchSection> sectionOf(std::span<const EmojiEntry> entries, bool withLetterScores) {
    SectionBuilder builder;
    for (const auto& entry : entries) {
        const std::vector<std::string_view> keywords(entry.keywords.begin(), entry.keywords.end());
        const std::vector<std::string_view> folded(entry.foldedKeywords.begin(), entry.foldedKeywords.end());
        const auto rank =
            entry.popularityRank == notRanked ? noRank : static_cast<std::uint32_t>(entry.popularityRank);
        builder.add(
            {entry.character, entry.name, keywords, entry.foldedName, folded, entry.unicodeBlock, rank});
    }
    return builder.build(withLetterScores);
}

} // namespace glyma
