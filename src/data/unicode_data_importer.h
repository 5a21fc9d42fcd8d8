#pragma once

#include "data/resources.h"

#include <cstdint>
#include <expected>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace glyma {

/// Reads the block list and the character list of the Unicode Character Database. Malformed lines are
/// skipped.
class UnicodeDataImporter {
public:
    struct BlockData {
        std::string name;
        std::int64_t rangeStart = 0;
        std::int64_t rangeEnd = 0; ///< inclusive
        bool operator==(const BlockData&) const = default;
    };
    struct CharData {
        std::int64_t codepoint = 0;
        std::string character;
        std::string name; ///< lower case
        std::string blockName;
        bool operator==(const CharData&) const = default;
    };

    explicit UnicodeDataImporter(const ResourceLocator& resources)
        : resources_(resources) {}

    /// In file order. Errors say which file and why.
    std::expected<std::vector<BlockData>, std::string> loadBlocks() const;
    /// \param blocks  sorted by rangeStart.
    std::expected<std::vector<CharData>, std::string> loadCharacters(std::span<const BlockData> blocks) const;

    static std::vector<BlockData> parseBlocks(std::string_view text);
    static std::vector<CharData> parseCharacters(std::string_view text, std::span<const BlockData> blocks);
    /// The name of the block that holds the code point, or "No_Block".
    static std::string blockOf(std::int64_t codepoint, std::span<const BlockData> blocks);

private:
    const ResourceLocator& resources_;
};

} // namespace glyma
