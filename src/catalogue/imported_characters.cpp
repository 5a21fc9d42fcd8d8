#include "catalogue/imported_characters.h"

#include "data/block_tables.h"
#include "unicode/properties.h"
#include "unicode/text.h"

#include <fmt/format.h>

#include <algorithm>
#include <unordered_set>
#include <utility>

namespace glyma {

namespace {

constexpr std::int64_t samplesPerBlock = 4;

} // namespace

ImportedCharacters::ImportedCharacters(const ReferenceData& data, std::span<const std::size_t> kept)
    : data_(data)
    , kept_(kept) {
    annotations_.reserve(data.annotations.size());
    for (const auto& annotation : data.annotations)
        annotations_.try_emplace(annotation.character, &annotation);
    for (const auto index : kept) {
        const auto& character = data.characters[index];
        auto& figures = figures_[character.blockName];
        ++figures.characterCount;
        if (figures.sampleCount++ < samplesPerBlock)
            figures.sampleChars += character.character;
    }
}

void ImportedCharacters::build(const std::function<bool(std::string_view)>& canDraw) {
    records_.reserve(kept_.size() + data_.annotations.size());
    for (const auto index : kept_)
        addCharacter(data_.characters[index]);

    // The annotations of characters that cannot be drawn must not bring them back as sequences.
    std::unordered_set<const CLDRImporter::CharData*> ofCharacters;
    for (const auto& character : data_.characters)
        ofCharacters.insert(annotation(unicode::withEmojiPresentation(character.character)));
    for (const auto& sequence : data_.annotations) {
        const auto isFirst = annotation(sequence.character) == &sequence;
        if (isFirst && !ofCharacters.contains(&sequence) && !sequence.character.empty() &&
            canDraw(sequence.character))
            addSequence(sequence);
    }
}

void ImportedCharacters::addCharacter(const UnicodeDataImporter::CharData& source) {
    auto character = unicode::withEmojiPresentation(source.character);
    auto name = source.name;
    std::vector<std::string> keywords;
    const auto* annotated = annotation(character);
    if (annotated == nullptr)
        annotated = annotation(source.character);
    if (annotated != nullptr) {
        name = annotated->name;
        keywords = annotated->keywords;
    } else {
        keywords = describingKeywords(source.codepoint);
    }
    for (const auto extra : extraKeywords(source.character))
        if (std::ranges::find(keywords, extra) == keywords.end())
            keywords.emplace_back(extra);
    add(makeUnicodeChar(std::move(character), std::move(name), std::move(keywords), source.blockName));
}

void ImportedCharacters::addSequence(const CLDRImporter::CharData& source) {
    const auto scalar = unicode::firstScalar(source.character);
    auto block = UnicodeDataImporter::blockOf(static_cast<std::int64_t>(scalar), data_.blocks);
    ++figures_[block].characterCount;
    add(makeUnicodeChar(source.character, source.name, source.keywords, std::move(block)));
}

const CLDRImporter::CharData* ImportedCharacters::annotation(std::string_view character) const {
    const auto found = annotations_.find(character);
    return found == annotations_.end() ? nullptr : found->second;
}

std::vector<std::string> ImportedCharacters::describingKeywords(std::int64_t codepoint) {
    const auto found = data_.descriptions.find(fmt::format("{:X}", codepoint));
    if (found == data_.descriptions.end())
        return {};
    ++enrichedCount_;
    return UniKemetImporter::keywords(found->second);
}

void ImportedCharacters::add(UnicodeChar record) {
    record.isEnabled = isDefaultEnabledBlock(record.unicodeBlock) &&
                       !isHiddenByDefault(record.character, record.name, record.unicodeBlock);
    records_.push_back(std::move(record));
}

std::vector<UnicodeBlock> ImportedCharacters::blocks() const {
    std::vector<UnicodeBlock> blocks;
    blocks.reserve(data_.blocks.size());
    for (const auto& source : data_.blocks) {
        const auto found = figures_.find(source.name);
        const auto figures = found == figures_.end() ? Figures{} : found->second;
        blocks.push_back({.name = source.name,
                          .rangeStart = source.rangeStart,
                          .rangeEnd = source.rangeEnd,
                          .characterCount = figures.characterCount,
                          .sampleChars = figures.sampleChars,
                          .isEnabled = isDefaultEnabledBlock(source.name)});
    }
    return blocks;
}

} // namespace glyma
