#include "charinfo/character_infos.h"

#include "catalogue/catalogue_values.h"
#include "catalogue/search_section.h"
#include "data/block_tables.h"
#include "data/scan.h"
#include "unicode/properties.h"
#include "unicode/text.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <unordered_set>

namespace glyma {

namespace {

constexpr char32_t firstTone = 0x1F3FB;
constexpr std::array<std::string_view, 5> toneNames = {"light skin tone", "medium-light skin tone",
                                                       "medium skin tone", "medium-dark skin tone",
                                                       "dark skin tone"};
constexpr char32_t zeroWidthJoiner = 0x200D;
constexpr char32_t variationSelector16 = 0xFE0F;

bool isOnlyControls(std::string_view cluster) {
    for (std::size_t at = 0; at < cluster.size();)
        if (!unicode::isControl(unicode::nextScalar(cluster, at)))
            return false;
    return true;
}

std::vector<std::string_view> distinctCharacters(std::string_view text, std::size_t limit) {
    std::vector<std::string_view> taken;
    std::unordered_set<std::string_view> seen;
    if (limit > 0)
        unicode::visitGraphemes(text, [&](std::string_view cluster) {
            if (!seen.contains(cluster) && !isOnlyControls(cluster)) {
                seen.insert(cluster);
                taken.push_back(cluster);
            }
            return taken.size() < limit;
        });
    return taken;
}

std::string withoutTones(std::string_view character) {
    auto scalars = unicode::scalars(character);
    std::erase_if(scalars, unicode::isSkinToneModifier);
    return unicode::fromScalars(scalars);
}

/// The spellings under which the catalogue may have the character, the likeliest first. Its own is the one
/// with all the U+FE0F that the sequence can have.
std::vector<std::string> lookupForms(std::string_view character) {
    const auto base = withoutTones(character);
    const auto bare = unicode::withoutVariationSelector16(base);
    std::vector<std::string> forms;
    for (auto& form : {std::string(character), unicode::withoutVariationSelector16(character), base, bare,
                       unicode::withEmojiPresentation(bare)})
        if (!form.empty() && std::ranges::find(forms, form) == forms.end())
            forms.push_back(form);
    return forms;
}

std::optional<StoredCharacter> findStored(std::string_view character, const CharacterReader& store) {
    for (const auto& form : lookupForms(character))
        if (auto found = store.find(form); found && *found)
            return *std::move(found);
    return std::nullopt;
}

std::vector<std::string> keywordsOf(std::string_view raw) {
    std::vector<std::string> keywords;
    if (!raw.empty())
        scan::forEachPiece(raw, ",", [&](std::string_view keyword) { keywords.emplace_back(keyword); });
    return keywords;
}

std::optional<std::string> toneOf(const std::vector<ScalarInfo>& scalars) {
    const auto tone = std::ranges::find_if(
        scalars, [](const ScalarInfo& scalar) { return unicode::isSkinToneModifier(scalar.value); });
    return tone == scalars.end() ? std::nullopt
                                 : std::optional<std::string>(toneNames[tone->value - firstTone]);
}

bool carriesMeaning(const ScalarInfo& scalar) {
    return scalar.value != zeroWidthJoiner && scalar.value != variationSelector16 &&
           !unicode::isSkinToneModifier(scalar.value);
}

} // namespace

CharacterInfos::CharacterInfos(std::filesystem::path storeFile, const ResourceLocator& resources)
    : storeFile_(std::move(storeFile))
    , resources_(resources)
    , names_(resources) {}

std::vector<CharacterInfo> CharacterInfos::buildInfos(std::string_view text, std::size_t limit) {
    auto opened = CharacterReader::open(storeFile_);
    const auto store = opened ? std::optional(*std::move(opened)) : std::nullopt;
    if (!popularity_)
        popularity_ = loadPopularity(resources_, nullptr);
    // Broken bytes are all the same character.
    std::string mended;
    if (!unicode::isWellFormed(text))
        text = mended = unicode::sanitized(text);
    std::vector<CharacterInfo> infos;
    for (const auto character : distinctCharacters(text, limit))
        infos.push_back(describe(character, store));
    names_.forgetList();
    return infos;
}

std::vector<ScalarInfo> CharacterInfos::scalarInfos(std::string_view text) {
    std::vector<ScalarInfo> infos;
    for (const auto scalar : unicode::scalars(describedPart(text)))
        infos.push_back({.value = scalar,
                         .hex = fmt::format("U+{:04X}", static_cast<std::uint32_t>(scalar)),
                         .name = names_.nameOf(scalar)});
    return infos;
}

CharacterInfo CharacterInfos::describe(std::string_view character,
                                       const std::optional<CharacterReader>& store) {
    const auto described = describedPart(character);
    CharacterInfo info;
    info.character = character;
    info.scalars = scalarInfos(described);
    if (described.size() < character.size())
        info.omittedScalars = unicode::scalars(character.substr(described.size())).size();
    info.appliedToneName = toneOf(info.scalars);
    // Nothing that long is stored.
    if (auto stored = store && info.omittedScalars == 0 ? findStored(character, *store) : std::nullopt) {
        info.name = std::move(stored->name);
        info.block = std::move(stored->unicodeBlock);
        info.keywords = keywordsOf(stored->keywordsRaw);
        info.usageCount = stored->usageCount;
        info.lastUsed = stored->lastUsed;
        info.isEnabled = stored->isEnabled;
    } else {
        info.name = derivedName(info);
        if (store)
            info.block =
                store->blockOf(info.scalars.front().value).value_or(std::nullopt).value_or(std::string());
    }
    info.isEmoji = !info.character.starts_with(specialPrefix) && isEmojiBlock(info.block) &&
                   unicode::looksLikeEmoji(described);
    info.supportsSkinTone = std::ranges::any_of(
        info.scalars, [](const ScalarInfo& scalar) { return unicode::isEmojiModifierBase(scalar.value); });
    const auto rank = popularity_->rankOf(described);
    if (rank != noRank)
        info.popularityRank = rank;
    return info;
}

std::string CharacterInfos::derivedName(const CharacterInfo& info) {
    std::string name;
    for (const auto& scalar : info.scalars)
        if (info.scalars.size() > 1 && carriesMeaning(scalar))
            name.append(name.empty() ? "" : " + ").append(scalar.name);
    return name.empty() ? info.scalars.front().name : name;
}

} // namespace glyma
