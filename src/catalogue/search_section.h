#pragma once

#include "catalogue/byte_mask.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace glyma {

/// Ends every field of folded and of shown text. UTF-8 never contains it, so no match crosses a field.
inline constexpr char fieldEnd = '\xFF';
inline constexpr std::uint32_t noRank = 0xFFFFFFFF;

/// A section's data: flat arrays that can be written to a file and mapped from it as they are. n is the
/// number of entries.
struct SectionArrays {
    /// A fieldEnd; then for each entry its folded name and folded keywords, each with a fieldEnd behind it;
    /// then scanPadding more.
    std::span<const char> folded;
    std::span<const std::uint32_t> nameStart; ///< n + 1, into folded; the last one is where the entries end
    std::span<const std::uint32_t> keywordsStart; ///< n, into folded
    std::span<const std::uint32_t>
        entryOfChunk;                   ///< for every 64 bytes of folded the entry that the first is part of
    std::span<const ByteMask> nameMask; ///< n
    std::span<const ByteMask> keywordsMask;     ///< n, of all keywords together
    std::span<const std::uint8_t> letterScores; ///< n for each letter of byte_mask.h, or none at all: the
                                                ///< score of the one-letter term, 0 for no match
    std::span<const char> shown; ///< for each entry character, name and keywords, a fieldEnd each
    std::span<const std::uint32_t> shownStart;  ///< n + 1, into shown
    std::span<const std::uint16_t> block;       ///< n, into the block names
    std::span<const char> blockNames;           ///< a fieldEnd behind each
    std::span<const std::uint32_t> rank;        ///< n: popularity, or noRank
    std::span<const std::uint32_t> byCharacter; ///< n: the entries in the byte order of their characters

    /// Calls `visit` with each array, in a fixed order.
    template<typename Self, typename Visitor>
    static void visitArrays(Self& self, Visitor&& visit) {
        visit(self.folded), visit(self.nameStart), visit(self.keywordsStart), visit(self.entryOfChunk);
        visit(self.nameMask), visit(self.keywordsMask), visit(self.letterScores), visit(self.shown);
        visit(self.shownStart), visit(self.block), visit(self.blockNames), visit(self.rank);
        visit(self.byCharacter);
    }
};

/// A run of catalogue entries in their order, laid out to be searched: immutable, shared, any thread. Entries
/// are numbered from 0.
class SearchSection {
public:
    SearchSection();
    /// \param owner  keeps the arrays' memory.
    SearchSection(const SectionArrays& arrays, std::shared_ptr<const void> owner);

    std::uint32_t size() const { return static_cast<std::uint32_t>(arrays_.rank.size()); }
    const SectionArrays& arrays() const { return arrays_; }

    /// All folded text, with scanPadding readable bytes behind it.
    std::string_view folded() const { return {arrays_.folded.data(), arrays_.nameStart.back()}; }
    /// The entry that the folded text at this place is part of.
    std::uint32_t entryAt(std::size_t place) const {
        auto entry = arrays_.entryOfChunk[place / 64];
        while (arrays_.nameStart[entry + 1] <= place)
            ++entry;
        return entry;
    }

    std::string_view foldedName(std::uint32_t entry) const {
        return text(arrays_.nameStart[entry], arrays_.keywordsStart[entry] - 1);
    }
    /// With a fieldEnd behind each keyword.
    std::string_view foldedKeywords(std::uint32_t entry) const {
        return text(arrays_.keywordsStart[entry], arrays_.nameStart[entry + 1]);
    }

    std::string_view character(std::uint32_t entry) const;
    std::string_view name(std::uint32_t entry) const;
    std::vector<std::string_view> keywords(std::uint32_t entry) const;
    std::string_view blockName(std::uint32_t entry) const;
    std::uint32_t rank(std::uint32_t entry) const { return arrays_.rank[entry]; }

    /// The first entry with this character.
    std::optional<std::uint32_t> find(std::string_view character) const;
    /// In entry order.
    std::span<const std::uint32_t> findAll(std::string_view character) const;

private:
    std::string_view text(std::size_t begin, std::size_t end) const {
        return {arrays_.folded.data() + begin, end - begin};
    }
    std::string_view shownField(std::uint32_t entry, int index) const;

    SectionArrays arrays_;
    std::shared_ptr<const void> owner_;
    std::vector<std::string_view> blockNames_;
};

/// The parts of a text each of which ends with a fieldEnd.
std::vector<std::string_view> fieldsOf(std::string_view text);

} // namespace glyma
