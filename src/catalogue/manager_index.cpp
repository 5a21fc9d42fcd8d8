#include "catalogue/manager_implementation.h"
#include "catalogue/personal_entries.h"
#include "catalogue/section_builder.h"
#include "data/search_reader.h"

#include <algorithm>

namespace glyma {

namespace {

std::optional<CatalogueTexts> currentImage(const std::filesystem::path& storeFile,
                                           const ResourceLocator& resources) {
    const auto reader = SearchReader::open(storeFile);
    if (!reader)
        return std::nullopt;
    const auto stamp = reader->searchStamp();
    return stamp && *stamp ? textsOfImage(storeFile, **stamp, resources) : std::nullopt;
}

} // namespace

void UnicodeDataManager::Implementation::loadAllEmojis() {
    auto loaded = loadKeyworded();
    if (loaded)
        loaded = loadPersonal();
    if (!loaded)
        services.log.debug("Glyma: ⚠️ loadAllEmojis failed — {}", loaded.error());
    dropRandomPools();
}

std::expected<void, std::string> UnicodeDataManager::Implementation::loadKeyworded() {
    if (auto image = currentImage(store.file(), services.resources)) {
        adoptKeyworded(image->keyworded, image->rest);
        return {};
    }
    auto rows = readKeyworded(store, *popularity);
    if (!rows)
        return std::unexpected(rows.error());
    adoptKeyworded(*std::move(rows), nullptr);
    return {};
}

/// \param restSection  null when it is still to be read.
void UnicodeDataManager::Implementation::adoptKeyworded(std::shared_ptr<const SearchSection> section,
                                                        std::shared_ptr<const SearchSection> restSection) {
    keyworded = std::move(section);
    rest = std::make_shared<LazyRest>(store.file(), restSection);
    personal.clear();
    rebuildIndex(usesOfKeyworded(), restSection);
    if (!restSection)
        writeImageInBackground();
}

UseByEntry UnicodeDataManager::Implementation::usesOfKeyworded() const {
    UseByEntry use;
    if (const auto reader = SearchReader::open(store.file()))
        (void)reader->visitUses(
            [&](std::string_view character, std::int64_t count, std::optional<Timestamp> lastUsed) {
                if (const auto entry = keyworded->find(character))
                    use.set({*entry, count, lastUsed});
            });
    return use;
}

void UnicodeDataManager::Implementation::writeImageInBackground() {
    services.tasks.run([source = rest, ranks = popularity, &resources = services.resources] {
        source->writeImage(*ranks, resources);
    });
}

std::expected<void, std::string> UnicodeDataManager::Implementation::loadPersonal() {
    std::vector<EmojiEntry> entries;
    const auto visited =
        store.visitUsedWithoutKeywords([&](const CharacterRow& row) { entries.push_back(usedEntry(row)); });
    if (!visited)
        return std::unexpected(visited.error());
    services.log.debug("Glyma: loaded {} emoji + {} used non-emoji into memory", keyworded->size(),
                       entries.size());

    std::ranges::move(specialEntries(), std::back_inserter(entries));
    const auto isIndexed = [&](std::string_view text) {
        return keyworded->find(text) ||
               std::ranges::find(entries, text, &EmojiEntry::character) != entries.end();
    };
    std::ranges::move(
        replacementEntries(services.preferences.userReplacements(), replacementUsage, isIndexed),
        std::back_inserter(entries));
    personal = std::move(entries);
    auto use = index->use();
    addUse(use, personal, keyworded->size());
    rebuildIndex(std::move(use), index->restSection());
    return {};
}

void UnicodeDataManager::Implementation::rebuildIndex(UseByEntry use,
                                                      std::shared_ptr<const SearchSection> restSection) {
    index = std::make_shared<CatalogueIndex>(keyworded, sectionOf(personal), std::move(restSection),
                                             popularity->total, std::move(use));
}

std::shared_ptr<const CatalogueIndex>
UnicodeDataManager::Implementation::indexWith(const std::shared_ptr<LazyRest>& source,
                                              std::shared_ptr<const SearchSection> restSection) {
    if (restSection == index->restSection())
        return index;
    auto joined = std::make_shared<CatalogueIndex>(keyworded, sectionOf(personal), std::move(restSection),
                                                   popularity->total, index->use());
    if (source == rest)
        index = joined;
    return joined;
}

void UnicodeDataManager::Implementation::dropRandomPools() {
    cachedRandomEmojiPool.reset();
    cachedRandomUnicodePool.reset();
}

void UnicodeDataManager::Implementation::loadTermSelections() {
    const auto selections = store.termSelections();
    if (!selections) {
        services.log.debug("Glyma: ⚠️ loadTermSelections failed — {}", selections.error());
        return;
    }
    LearnedTerms loaded;
    for (const auto& selection : *selections)
        loaded.set(selection.term, selection.character, {selection.count, selection.lastUsed});
    terms = std::move(loaded);
    services.log.debug("Glyma: loaded {} term selections", selections->size());
}

void UnicodeDataManager::Implementation::reloadEnabledBlocks() {
    auto names = store.enabledBlockNames();
    if (names)
        enabledBlockNames = *std::move(names);
    else
        services.log.debug("Glyma: ⚠️ reloadEnabledBlocks failed — {}", names.error());
}

} // namespace glyma
