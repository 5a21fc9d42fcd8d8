#include "catalogue/manager_implementation.h"
#include "catalogue/personal_entries.h"

namespace glyma {

void UnicodeDataManager::Implementation::recordUsage(const std::string& character, const std::string& query) {
    const auto record = countedRecord(character);
    if (record)
        learn(*record);
    else
        learnReplacement(character);
    std::optional<TermSelection> selection;
    if (!query.empty())
        selection = learnTerm(character, query);
    // What is in memory holds for this run even when it cannot be stored.
    (void)store.recordUse(record, selection);
    owner.usageRecorded.emit();
}

/// The stored character with this use counted, not yet stored.
std::optional<UnicodeChar> UnicodeDataManager::Implementation::countedRecord(const std::string& character) {
    auto record = store.character(character).value_or(std::nullopt);
    if (record) {
        ++record->usageCount;
        record->lastUsed = services.clock.now();
    }
    return record;
}

void UnicodeDataManager::Implementation::learn(const UnicodeChar& record) {
    auto entry = index->findIndexed(record.character);
    if (!entry) {
        entry = index->indexedSize();
        personal.push_back(usedEntry(record));
        rebuildIndex(index->use(), index->restSection());
        dropRandomPools();
    }
    setUse({*entry, record.usageCount, record.lastUsed});
}

void UnicodeDataManager::Implementation::learnReplacement(const std::string& character) {
    const auto entry = index->findIndexed(character);
    if (!entry)
        return;
    const auto* const use = index->use().find(*entry);
    const auto count = (use != nullptr ? use->count : 0) + 1;
    const auto now = services.clock.now();
    setUse({*entry, count, now});
    replacementUsage[character] = {count, now};
    saveReplacementUsage(services.settings, replacementUsage);
}

TermSelection UnicodeDataManager::Implementation::learnTerm(const std::string& character,
                                                            const std::string& query) {
    const auto now = services.clock.now();
    auto selection = makeTermSelection(query, character, now);
    if (const auto known = store.termSelection(selection.id); known && *known) {
        selection = **known;
        ++selection.count;
        selection.lastUsed = now;
    }
    terms.set(selection.term, selection.character, {selection.count, selection.lastUsed});
    return selection;
}

void UnicodeDataManager::Implementation::setUse(const EntryUse& use) {
    auto changed = std::make_shared<CatalogueIndex>(*index);
    changed->setUse(use);
    index = std::move(changed);
}

} // namespace glyma
