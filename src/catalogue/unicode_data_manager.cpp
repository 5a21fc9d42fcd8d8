#include "catalogue/unicode_data_manager.h"

#include "catalogue/manager_implementation.h"

namespace glyma {

UnicodeDataManager::Implementation::Implementation(UnicodeDataManager& manager,
                                                   CatalogueServices catalogueServices, Store openStore)
    : owner(manager)
    , services(catalogueServices)
    , store(std::move(openStore))
    , random(services.randomSeed ? *services.randomSeed : std::random_device()()) {}

UnicodeDataManager::Implementation::~Implementation() {
    if (!enabledChanges->empty())
        (void)enabledChanges->storeInto(store);
}

UnicodeDataManager::UnicodeDataManager(CatalogueServices services, Store store)
    : implementation_(std::make_unique<Implementation>(*this, services, std::move(store))) {}
UnicodeDataManager::~UnicodeDataManager() = default;

void UnicodeDataManager::start() {
    implementation_->start();
}

bool UnicodeDataManager::isCurrentlyImporting() const {
    return implementation_->isImporting;
}

void UnicodeDataManager::loadAllEmojis() {
    implementation_->loadAllEmojis();
}

void UnicodeDataManager::reloadEnabledBlocks() {
    implementation_->reloadEnabledBlocks();
}

void UnicodeDataManager::loadTermSelections() {
    implementation_->loadTermSelections();
}

std::vector<EmojiEntry> UnicodeDataManager::allKeywordedCharacters() const {
    const auto& index = *implementation_->index;
    std::vector<EmojiEntry> entries;
    entries.reserve(index.indexedSize());
    for (std::uint32_t entry = 0; entry < index.indexedSize(); ++entry)
        entries.push_back(index.entry(entry));
    return entries;
}

std::shared_ptr<SearchTask> UnicodeDataManager::search(const std::string& query, OnResults onResults) {
    return implementation_->search(query, std::move(onResults));
}

void UnicodeDataManager::recordUsage(const std::string& character, const std::string& query) {
    implementation_->recordUsage(character, query);
}

std::string UnicodeDataManager::pickRandom(bool isEmoji) {
    return implementation_->pickRandom(isEmoji);
}

const std::vector<std::string>& UnicodeDataManager::randomEmojiPool() {
    auto& pool = implementation_->cachedRandomEmojiPool;
    if (!pool)
        pool = makeRandomEmojiPool(*implementation_->index);
    return *pool;
}

const std::vector<std::string>& UnicodeDataManager::randomUnicodeDisplayPool() {
    const auto includesEmoji = implementation_->services.preferences.randomUnicodeIncludesEmoji();
    auto& pool = implementation_->cachedRandomUnicodePool;
    if (!pool || pool->first != includesEmoji)
        pool.emplace(includesEmoji, makeRandomDisplayPool(*implementation_->index, includesEmoji));
    return pool->second;
}

std::vector<UnicodeDataManager::RandomPick> UnicodeDataManager::randomPickHistory(bool isEmoji) const {
    std::vector<RandomPick> picks;
    for (auto& record : RandomPickHistory(implementation_->services.settings, isEmoji).load())
        picks.push_back({std::move(record.character), record.date});
    return picks;
}

void UnicodeDataManager::clearRandomPickHistory(bool isEmoji) {
    RandomPickHistory(implementation_->services.settings, isEmoji).clear();
    randomPickHistoryDidChange.emit();
}

std::vector<UnicodeBlock> UnicodeDataManager::allBlocks() const {
    auto blocks = implementation_->store.blocks().value_or(std::vector<UnicodeBlock>{});
    implementation_->enabledChanges->applyTo(blocks);
    return blocks;
}

std::map<std::string, std::int64_t> UnicodeDataManager::enabledCounts() const {
    return implementation_->store.enabledCounts().value_or(std::map<std::string, std::int64_t>{});
}

std::vector<UnicodeChar> UnicodeDataManager::charactersInBlock(const std::string& blockName) const {
    auto characters =
        implementation_->store.charactersInBlock(blockName).value_or(std::vector<UnicodeChar>{});
    implementation_->enabledChanges->applyTo(characters);
    return characters;
}

void UnicodeDataManager::setBlockCharactersEnabled(const std::string& blockName, bool enabled) {
    implementation_->setEnabled({blockName, enabled, std::nullopt, enabled});
}

void UnicodeDataManager::setCharactersEnabled(const std::string& blockName, bool isBlockEnabled,
                                              std::vector<std::string> characters, bool enabled) {
    implementation_->setEnabled({blockName, isBlockEnabled, std::move(characters), enabled});
}

} // namespace glyma
