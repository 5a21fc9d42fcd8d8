#pragma once

#include "data/records.h"
#include "data/user_data_backup.h"

#include <cstdint>
#include <expected>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace glyma {

/// One row of UnicodeChar as a search reads it; the views hold during the visit only.
struct CharacterRow {
    std::int64_t id = 0; ///< stable for the life of the store
    std::string_view character;
    std::string_view name;
    std::string_view keywordsRaw;
    std::string_view foldedName;
    std::string_view foldedKeywords; ///< each keyword folded, joined with ","
    std::string_view unicodeBlock;
    std::int64_t usageCount = 0;
    std::optional<Timestamp> lastUsed;
};

/// The persistent catalogue and what the user taught it: an SQLite file in WAL mode with the tables
/// `UnicodeChar`, `UnicodeBlock` and `TermSelection`, whose columns are named as the records' fields, plus
/// columns of its own with the folded texts (folding at load would cost more than the load). Rows that fill
/// an empty store are put in name order, so that reading them in that order is one sweep. Each instance is
/// one connection and is used from one thread at a time; several may be open on a file. Errors carry SQLite's
/// words. A call that fails changes nothing. A call that meets damage in the file leaves a mark beside it,
/// and the next open() fails. Visitors must not call the store that they visit.
class Store {
public:
    template<typename Value>
    using Result = std::expected<Value, std::string>;
    using Visitor = std::function<void(const CharacterRow&)>;

    /// What schemaVersion() of a store written by this program says.
    static constexpr std::string_view currentSchemaVersion = "1.0.0";

    /// Opens the file, creating it and its tables when it is absent. Fails on a file that is no database, is
    /// damaged or has another schema version; the file is left as it is.
    static Result<Store> open(const std::filesystem::path& file);
    /// Whether the file itself is the reason why it cannot be opened (and not its permissions, a full disk,
    /// ...).
    static bool isUnusable(const std::filesystem::path& file);
    /// Whether the file is, as far as its first bytes tell, a store of this program.
    static bool isStore(const std::filesystem::path& file);
    /// The file beside a store that is there once damage was met in it.
    static std::filesystem::path damageMark(const std::filesystem::path& file);

    Store(Store&&) noexcept;
    Store& operator=(Store&&) noexcept;
    ~Store();

    const std::filesystem::path& file() const;

    // Reading. Rows come in name order (localized standard comparison) unless said otherwise.
    Result<std::int64_t> characterCount() const;
    /// Switched on and with keywords.
    Result<void> visitKeyworded(const Visitor& visitor) const;
    /// Switched on, without keywords and used at least once.
    Result<void> visitUsedWithoutKeywords(const Visitor& visitor) const;
    /// Switched on and without keywords, used or not; only id, character, foldedName, usageCount.
    Result<void> visitWithoutKeywords(const Visitor& visitor) const;
    /// Those rows, in the order of the ids; absent ids are skipped.
    Result<void> visitRows(std::span<const std::int64_t> ids, const Visitor& visitor) const;
    Result<std::optional<UnicodeChar>> character(std::string_view character) const;
    /// Switched on; store order.
    Result<std::vector<std::pair<std::string, std::string>>> enabledCharactersAndBlocks() const;
    Result<std::vector<UnicodeChar>> charactersInBlock(std::string_view blockName) const;
    Result<std::vector<UnicodeChar>> usedCharacters() const;
    Result<std::vector<UnicodeBlock>> blocks() const;
    Result<std::set<std::string, std::less<>>> enabledBlockNames() const;
    /// By block name: how many of its characters are switched on; blocks without any are absent.
    Result<std::map<std::string, std::int64_t>> enabledCounts() const;
    Result<std::vector<TermSelection>> termSelections() const;
    Result<std::optional<TermSelection>> termSelection(std::string_view id) const;

    /// What the user taught, of all that is stored. A block without characters counts by its own switch.
    /// \param now  the export date.
    Result<UserDataBackup> userData(Timestamp now) const;

    // Writing. Inserting a record whose unique key exists updates that record.
    Result<void> insertCharacters(std::span<const UnicodeChar> characters);
    Result<void> insertBlocks(std::span<const UnicodeBlock> blocks);
    Result<void> insertTermSelections(std::span<const TermSelection> selections);
    /// Usage of one character and one learned term, in one transaction; either may be absent.
    Result<void> recordUse(const std::optional<UnicodeChar>& character,
                           const std::optional<TermSelection>& selection);
    Result<void> setUsage(std::string_view character, std::int64_t usageCount,
                          std::optional<Timestamp> lastUsed);
    Result<void> setCharactersEnabled(std::string_view blockName, bool enabled);
    Result<void> setCharacterEnabled(std::string_view character, bool enabled);
    Result<void> setBlockEnabled(std::string_view blockName, bool enabled);
    /// Puts back what userData() gave: usage, learned terms, which characters and blocks are on. What the
    /// store does not have is left out, what the backup does not name stays. All of it or nothing.
    Result<void> restoreUserData(const UserDataBackup& backup);
    /// Removes the characters and blocks; the learned terms stay.
    Result<void> removeCatalogue();

    /// A transaction over several calls: commits with commit(), rolls back when destroyed without. It must
    /// not outlive its store, which can have one at a time.
    class Transaction {
    public:
        Transaction(Transaction&&) noexcept;
        Transaction& operator=(Transaction&&) noexcept;
        ~Transaction();
        Result<void> commit();

    private:
        friend class Store;
        struct Implementation;
        explicit Transaction(std::unique_ptr<Implementation> implementation);
        std::unique_ptr<Implementation> implementation_;
    };
    Result<Transaction> begin();

private:
    struct Implementation;
    explicit Store(std::unique_ptr<Implementation> implementation);
    std::unique_ptr<Implementation> implementation_;
};

} // namespace glyma
