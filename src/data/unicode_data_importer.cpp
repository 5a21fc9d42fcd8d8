#include "data/unicode_data_importer.h"

#include "data/resource_text.h"
#include "data/scan.h"
#include "unicode/text.h"

#include <algorithm>
#include <array>
#include <optional>

namespace glyma {
namespace {

using BlockData = UnicodeDataImporter::BlockData;
using CharData = UnicodeDataImporter::CharData;

constexpr std::size_t expectedBlocks = 400;
constexpr std::size_t expectedCharacters = 65000;
constexpr std::array<std::string_view, 3> excludedCategories = {"Cc", "Co", "Cs"};
constexpr std::string_view noBlock = "No_Block";

/// "0000..007F; Basic Latin"
std::optional<BlockData> parseBlock(std::string_view line) {
    line = scan::trimmed(line);
    const auto semicolon = line.find(';');
    if (line.starts_with('#') || semicolon == std::string_view::npos)
        return std::nullopt;
    std::vector<std::string_view> ends;
    scan::forEachPiece(scan::trimmed(line.substr(0, semicolon)), ".", [&](std::string_view piece) {
        if (!piece.empty())
            ends.push_back(piece);
    });
    if (ends.size() != 2)
        return std::nullopt;
    const auto first = scan::hexadecimal(ends[0]);
    const auto last = scan::hexadecimal(ends[1]);
    if (!first || !last)
        return std::nullopt;
    return BlockData{std::string(scan::trimmed(line.substr(semicolon + 1))), *first, *last};
}

const BlockData* findBlock(std::int64_t codepoint, std::span<const BlockData> blocks) {
    const auto after = std::ranges::upper_bound(blocks, codepoint, {}, &BlockData::rangeStart);
    if (after == blocks.begin())
        return nullptr;
    const auto& candidate = *std::prev(after);
    return codepoint <= candidate.rangeEnd ? &candidate : nullptr;
}

bool isScalar(std::int64_t codepoint) {
    return codepoint >= 0 && codepoint < 0x110000 && (codepoint < 0xD800 || codepoint > 0xDFFF);
}

/// "0041;LATIN CAPITAL LETTER A;Lu;0;L;..."
std::optional<CharData> parseCharacter(std::string_view line, std::span<const BlockData> blocks) {
    const auto nameAt = line.find(';') + 1;
    const auto categoryAt = line.find(';', nameAt) + 1;
    if (nameAt == 0 || categoryAt == 0)
        return std::nullopt;
    const auto name = line.substr(nameAt, categoryAt - 1 - nameAt);
    const auto category = line.substr(categoryAt, line.find(';', categoryAt) - categoryAt);
    // "<CJK Ideograph, First>": what only a range defines has no name to be found by.
    if (std::ranges::find(excludedCategories, category) != excludedCategories.end() || name.starts_with('<'))
        return std::nullopt;
    const auto codepoint = scan::hexadecimal(line.substr(0, nameAt - 1));
    if (!codepoint || !isScalar(*codepoint))
        return std::nullopt;
    const auto* block = findBlock(*codepoint, blocks);
    return CharData{*codepoint, unicode::fromScalar(static_cast<char32_t>(*codepoint)),
                    unicode::lowercased(name), std::string(block ? std::string_view(block->name) : noBlock)};
}

} // namespace

std::string UnicodeDataImporter::blockOf(std::int64_t codepoint, std::span<const BlockData> blocks) {
    const auto* block = findBlock(codepoint, blocks);
    return std::string(block ? std::string_view(block->name) : noBlock);
}

std::vector<BlockData> UnicodeDataImporter::parseBlocks(std::string_view text) {
    std::vector<BlockData> blocks;
    blocks.reserve(expectedBlocks);
    scan::forEachLine(text, [&](std::string_view line) {
        if (auto block = parseBlock(line))
            blocks.push_back(std::move(*block));
    });
    return blocks;
}

std::vector<CharData> UnicodeDataImporter::parseCharacters(std::string_view text,
                                                           std::span<const BlockData> blocks) {
    std::vector<CharData> characters;
    characters.reserve(expectedCharacters);
    scan::forEachLine(text, [&](std::string_view line) {
        if (auto character = parseCharacter(line, blocks))
            characters.push_back(std::move(*character));
    });
    return characters;
}

std::expected<std::vector<BlockData>, std::string> UnicodeDataImporter::loadBlocks() const {
    const auto file = readResource(resources_, "Blocks", "txt");
    if (!file)
        return std::unexpected(file.error());
    auto blocks = parseBlocks(file->text);
    if (blocks.empty())
        return std::unexpected(file->problem("holds no blocks"));
    return blocks;
}

std::expected<std::vector<CharData>, std::string>
UnicodeDataImporter::loadCharacters(std::span<const BlockData> blocks) const {
    const auto file = readResource(resources_, "UnicodeData", "txt");
    if (!file)
        return std::unexpected(file.error());
    auto characters = parseCharacters(file->text, blocks);
    if (characters.empty())
        return std::unexpected(file->problem("holds no characters"));
    return characters;
}

} // namespace glyma
