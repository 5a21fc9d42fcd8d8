#include "catalogue/catalogue_files.h"
#include "catalogue/import_pipeline.h"
#include "catalogue/manager_implementation.h"

namespace glyma {

void UnicodeDataManager::Implementation::start() {
    services.log.debug("Glyma: SQLite store → {}", shortened(store.file()));
    popularity = std::make_shared<Popularity>(loadPopularity(services.resources, &services.log));
    replacementUsage = loadReplacementUsage(services.settings);
    services.log.debug("Glyma: loaded {} user replacement usage records", replacementUsage.size());
    replacementsSubscription =
        services.preferences.userReplacementsAssigned.connect([this] { loadAllEmojis(); });

    const auto count = store.characterCount().value_or(0);
    if (count < 1) {
        services.log.debug("Glyma: store is empty — importing from bundle…");
        startImport();
        return;
    }
    services.log.debug("Glyma: store has {} characters — skipping import", count);
    loadAllEmojis();
    loadTermSelections();
    reloadEnabledBlocks();
}

void UnicodeDataManager::Implementation::startImport() {
    isImporting = true;
    owner.importStarted.emit();
    // A job on the main thread does nothing once the manager is gone; the import itself then ends unheard.
    const auto onMain = [life = std::weak_ptr(alive),
                         &scheduler = services.scheduler](std::function<void()> job) {
        scheduler.post([life, job = std::move(job)] {
            if (life.lock())
                job();
        });
    };
    services.tasks.run([this, onMain, life = std::weak_ptr(alive), file = store.file(), &log = services.log,
                        &resources = services.resources, &fonts = services.fonts] {
        if (life.expired())
            return;
        const auto progress = [this, onMain](std::string_view phase) {
            onMain([this, text = std::string(phase)] { owner.importProgress.emit(text); });
        };
        const ImportPipeline pipeline{resources, fonts, log, progress};
        std::string failure;
        if (auto own = Store::open(file); !own) {
            log.debug("Glyma: ⚠️ import failed — {}", own.error());
            failure = own.error();
        } else if (const auto summary = pipeline.run(*own); !summary) {
            failure = summary.error();
        }
        onMain([this, failure] { finishImport(failure); });
    });
}

void UnicodeDataManager::Implementation::finishImport(const std::string& failure) {
    isImporting = false;
    if (failure.empty()) {
        loadAllEmojis();
        loadTermSelections();
        reloadEnabledBlocks();
    }
    owner.importComplete.emit(failure);
}

} // namespace glyma
