#pragma once

#include "catalogue/catalogue_values.h"
#include "catalogue/search_section.h"

#include <map>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace glyma {

/// One entry as it goes into a section; UTF-8.
struct SectionEntry {
    std::string_view character;
    std::string_view name;
    std::span<const std::string_view> keywords;
    std::string_view foldedName;
    std::span<const std::string_view> foldedKeywords; ///< as many as keywords
    std::string_view unicodeBlock;
    std::uint32_t rank = noRank;
};

/// Lays entries out as a section. One thread at a time.
class SectionBuilder {
public:
    SectionBuilder();

    void add(const SectionEntry& entry);
    /// The section of what was added; the builder is empty afterwards.
    /// \param withLetterScores  makes one-letter terms fast, for 36 bytes an entry.
    std::shared_ptr<const SearchSection> build(bool withLetterScores = false);

private:
    struct Storage {
        std::vector<char> folded;
        std::vector<std::uint32_t> nameStart;
        std::vector<std::uint32_t> keywordsStart;
        std::vector<std::uint32_t> entryOfChunk;
        std::vector<ByteMask> nameMask;
        std::vector<ByteMask> keywordsMask;
        std::vector<std::uint8_t> letterScores;
        std::vector<char> shown;
        std::vector<std::uint32_t> shownStart;
        std::vector<std::uint16_t> block;
        std::vector<char> blockNames;
        std::vector<std::uint32_t> rank;
        std::vector<std::uint32_t> byCharacter;
        SectionArrays arrays() const;
    };

    std::uint16_t blockNumber(std::string_view name);
    void finishIndexes();

    std::unique_ptr<Storage> storage_;
    std::map<std::string, std::uint16_t, std::less<>> blockNumbers_;
};

std::shared_ptr<const SearchSection> sectionOf(std::span<const EmojiEntry> entries,
                                               bool withLetterScores = false);

} // namespace glyma
