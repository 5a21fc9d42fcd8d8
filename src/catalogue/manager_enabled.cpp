#include "catalogue/manager_implementation.h"

namespace glyma {

void UnicodeDataManager::Implementation::setEnabled(EnabledChange change) {
    enabledChanges->add(std::move(change));
    ++enabledChangeCount;
    if (!isStoringEnabled)
        storeEnabledInBackground();
}

void UnicodeDataManager::Implementation::storeEnabledInBackground() {
    isStoringEnabled = true;
    services.tasks.run([this, life = std::weak_ptr(alive), changes = enabledChanges, ranks = popularity,
                        file = store.file(), count = enabledChangeCount, &log = services.log,
                        &scheduler = services.scheduler] {
        auto loaded = storeAndRead(file, *changes, *ranks);
        if (!loaded)
            log.debug("Glyma: ⚠️ storing what was switched in the library failed — {}", loaded.error());
        scheduler.post([this, life, count, loaded = std::move(loaded)] {
            if (life.lock())
                finishStoringEnabled(count, loaded);
        });
    });
}

auto UnicodeDataManager::Implementation::storeAndRead(const std::filesystem::path& file,
                                                      EnabledChanges& changes, const Popularity& popularity)
    -> std::expected<EnabledTexts, std::string> {
    auto store = Store::open(file);
    if (!store)
        return std::unexpected(store.error());
    if (auto stored = changes.storeInto(*store); !stored)
        return std::unexpected(stored.error());
    auto texts = readKeyworded(*store, popularity);
    if (!texts)
        return std::unexpected(texts.error());
    auto names = store->enabledBlockNames();
    if (!names)
        return std::unexpected(names.error());
    return EnabledTexts{*std::move(texts), *std::move(names)};
}

void UnicodeDataManager::Implementation::finishStoringEnabled(
    std::uint64_t storedCount, const std::expected<EnabledTexts, std::string>& loaded) {
    isStoringEnabled = false;
    if (loaded) {
        adoptKeyworded(loaded->keyworded, nullptr);
        if (auto personalLoaded = loadPersonal(); !personalLoaded)
            services.log.debug("Glyma: ⚠️ loadAllEmojis failed — {}", personalLoaded.error());
        enabledBlockNames = loaded->enabledBlockNames;
        dropRandomPools();
    }
    // What failed waits for the next change: it may well fail again.
    if (storedCount != enabledChangeCount)
        storeEnabledInBackground();
}

} // namespace glyma
