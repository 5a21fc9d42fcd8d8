#pragma once

#include "catalogue/catalogue_index.h"
#include "catalogue/catalogue_texts.h"
#include "catalogue/enabled_changes.h"
#include "catalogue/lazy_rest.h"
#include "catalogue/learned_terms.h"
#include "catalogue/popularity.h"
#include "catalogue/random_picks.h"
#include "catalogue/ranking.h"
#include "catalogue/replacement_usage.h"
#include "catalogue/unicode_data_manager.h"

#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace glyma {

/// The manager's state; its work is spread over manager_*.cpp. Main thread.
struct UnicodeDataManager::Implementation {
    Implementation(UnicodeDataManager& manager, CatalogueServices catalogueServices, Store openStore);
    ~Implementation();

    // manager_index.cpp
    void loadAllEmojis();
    void loadTermSelections();
    void reloadEnabledBlocks();
    std::expected<void, std::string> loadKeyworded();
    void adoptKeyworded(std::shared_ptr<const SearchSection> section,
                        std::shared_ptr<const SearchSection> restSection);
    std::expected<void, std::string> loadPersonal();
    UseByEntry usesOfKeyworded() const;
    void writeImageInBackground();
    void rebuildIndex(UseByEntry use, std::shared_ptr<const SearchSection> restSection);
    /// The index with that rest; kept when it is the rest of the present index.
    std::shared_ptr<const CatalogueIndex> indexWith(const std::shared_ptr<LazyRest>& source,
                                                    std::shared_ptr<const SearchSection> restSection);
    void dropRandomPools();

    // manager_search.cpp
    std::shared_ptr<SearchTask> search(const std::string& query, OnResults onResults);
    std::vector<RankedEntry> firstPhase(const std::string& query, const QueryTerms& terms) const;
    std::vector<RankedEntry> secondPhase(const std::string& query, const QueryTerms& terms,
                                         const CatalogueIndex& joined,
                                         const std::vector<TextMatch>& matches) const;

    // manager_usage.cpp
    void recordUsage(const std::string& character, const std::string& query);
    std::optional<UnicodeChar> countedRecord(const std::string& character);
    void learn(const UnicodeChar& record);
    void learnReplacement(const std::string& character);
    TermSelection learnTerm(const std::string& character, const std::string& query);
    void setUse(const EntryUse& use);

    // manager_enabled.cpp
    struct EnabledTexts {
        std::shared_ptr<const SearchSection> keyworded;
        std::set<std::string, std::less<>> enabledBlockNames;
    };
    void setEnabled(EnabledChange change);
    void storeEnabledInBackground();
    /// Background threads.
    static std::expected<EnabledTexts, std::string>
    storeAndRead(const std::filesystem::path& file, EnabledChanges& changes, const Popularity& popularity);
    void finishStoringEnabled(std::uint64_t storedCount,
                              const std::expected<EnabledTexts, std::string>& loaded);

    // manager_random.cpp
    std::string pickRandom(bool isEmoji);
    std::vector<std::string> randomUnicodePool() const;

    // manager_import.cpp
    void start();
    void startImport();
    void finishImport(const std::string& failure);

    UnicodeDataManager& owner;
    CatalogueServices services;
    Store store;
    bool isImporting = false;
    std::shared_ptr<const Popularity> popularity = std::make_shared<Popularity>();
    ReplacementUsage replacementUsage;
    LearnedTerms terms;
    std::set<std::string, std::less<>> enabledBlockNames;
    std::shared_ptr<EnabledChanges> enabledChanges = std::make_shared<EnabledChanges>();
    std::uint64_t enabledChangeCount = 0;
    bool isStoringEnabled = false;

    std::shared_ptr<const SearchSection> keyworded = std::make_shared<SearchSection>();
    std::vector<EmojiEntry> personal; ///< without present use, which is in the index
    std::shared_ptr<LazyRest> rest;
    std::shared_ptr<const CatalogueIndex> index = std::make_shared<CatalogueIndex>();

    RandomGenerator random;
    std::optional<std::vector<std::string>> cachedRandomEmojiPool;
    std::optional<std::pair<bool, std::vector<std::string>>>
        cachedRandomUnicodePool; ///< with emoji or without

    Subscription replacementsSubscription;
    /// Background work and posted jobs hold it weakly and do nothing when it is gone.
    std::shared_ptr<int> alive = std::make_shared<int>();
};

} // namespace glyma
