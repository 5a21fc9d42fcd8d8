#pragma once

#include "catalogue/catalogue_values.h"
#include "catalogue/picker_items.h"
#include "catalogue/store_lifecycle.h"
#include "data/resources.h"
#include "data/store.h"
#include "platform/font_coverage.h"
#include "platform/scheduler.h"
#include "platform/settings_store.h"
#include "platform/subscription.h"
#include "preferences/log.h"
#include "preferences/user_preferences.h"

#include <cstdint>
#include <expected>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace glyma {

/// Handle of a search whose second phase is still to come. Destroying it does not cancel; a cancelled search
/// never delivers. Main thread.
class SearchTask {
public:
    virtual ~SearchTask() = default;
    virtual void cancel() = 0;
};

/// What the catalogue needs around it.
struct CatalogueServices {
    Scheduler& scheduler;
    TaskRunner& tasks;
    WallClock& clock;
    SettingsStore& settings;
    UserPreferences& preferences;
    Log& log;
    const ResourceLocator& resources;
    FontCoverage& fonts;
    /// Makes random picks repeatable; none: seeded by the system.
    std::optional<std::uint64_t> randomSeed = std::nullopt;
};

/// The one owner of the character catalogue: the in-memory index that the first search phase reads, the
/// learned usage, the random pools and the store behind them. Main thread, but for the store query of the
/// second phase and the import, which run on background threads with connections of their own.
class UnicodeDataManager {
public:
    using OnResults = std::function<void(PickerItems items, bool isFinal)>;

    UnicodeDataManager(CatalogueServices services, Store store);
    ~UnicodeDataManager();
    UnicodeDataManager(const UnicodeDataManager&) = delete;
    UnicodeDataManager& operator=(const UnicodeDataManager&) = delete;

    /// Loads the catalogue, or starts the import in the background when the store is empty.
    void start();
    bool isCurrentlyImporting() const;

    Signal<> importStarted;
    /// The text of the phase that begins.
    Signal<const std::string&> importProgress;
    /// The import has ended; the argument says why it failed, empty when it did not.
    Signal<const std::string&> importComplete;
    Signal<> usageRecorded;
    Signal<> randomPickHistoryDidChange;

    // Index
    void loadAllEmojis();
    void reloadEnabledBlocks();
    void loadTermSelections();
    /// A copy of the in-memory index, in its order. For tests and diagnosis.
    std::vector<EmojiEntry> allKeywordedCharacters() const;

    // Search
    /// Ranks the catalogue against the text after the trigger. Delivers once before it returns; when that
    /// delivery is not final, delivers again, final, unless cancelled. \param query  as typed, UTF-8. \return
    /// the second phase, or null when there is none.
    std::shared_ptr<SearchTask> search(const std::string& query, OnResults onResults);

    // Learning
    /// \param character  the chosen entry's, before any skin tone.
    /// \param query      as typed, unchanged.
    void recordUsage(const std::string& character, const std::string& query);

    // Random picks
    struct RandomPick {
        std::string character;
        Timestamp date;
        bool operator==(const RandomPick&) const = default;
    };
    /// "?" when there is nothing to pick from.
    std::string pickRandom(bool isEmoji);
    const std::vector<std::string>& randomEmojiPool();
    const std::vector<std::string>& randomUnicodeDisplayPool();
    std::vector<RandomPick> randomPickHistory(bool isEmoji) const;
    void clearRandomPickHistory(bool isEmoji);

    // Blocks, for the preferences. What was switched counts at once; it is stored in the background, in the
    // order of the calls, and then searches follow. What cannot be stored is tried again with the next
    // change, and when the manager goes.
    /// By name.
    std::vector<UnicodeBlock> allBlocks() const;
    /// By block name: how many of its characters the store has switched on; blocks without any are absent.
    std::map<std::string, std::int64_t> enabledCounts() const;
    /// By name, switched on or not.
    std::vector<UnicodeChar> charactersInBlock(const std::string& blockName) const;
    /// Switches the block with all its characters.
    void setBlockCharactersEnabled(const std::string& blockName, bool enabled);
    void setCharactersEnabled(const std::string& blockName, bool isBlockEnabled,
                              std::vector<std::string> characters, bool enabled);

private:
    struct Implementation;
    std::unique_ptr<Implementation> implementation_;
};

} // namespace glyma
