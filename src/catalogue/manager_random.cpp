#include "catalogue/manager_implementation.h"

namespace glyma {

std::string UnicodeDataManager::Implementation::pickRandom(bool isEmoji) {
    const auto pool = isEmoji ? owner.randomEmojiPool() : randomUnicodePool();
    if (pool.empty())
        return "?";
    auto pick = RandomDraw(services.settings, isEmoji).draw(pool, random);
    RandomPickHistory(services.settings, isEmoji).record(pick, services.clock.now());
    owner.randomPickHistoryDidChange.emit();
    return pick;
}

std::vector<std::string> UnicodeDataManager::Implementation::randomUnicodePool() const {
    auto pairs = store.enabledCharactersAndBlocks();
    if (!pairs) {
        services.log.debug("Glyma: ⚠️ pickRandom fetch failed — {}", pairs.error());
        return {};
    }
    const auto includesEmoji = services.preferences.randomUnicodeIncludesEmoji();
    std::vector<std::string> pool;
    pool.reserve(pairs->size());
    for (auto& [character, blockName] : *pairs)
        if (includesEmoji || !isPoolEmoji(character, blockName))
            pool.push_back(std::move(character));
    return pool;
}

} // namespace glyma
