#include "data/store_implementation.h"
#include "data/store_writing.h"

#include <algorithm>
#include <limits>
#include <unordered_set>

namespace glyma {

namespace {

using AllEnabled = UserDataBackup::AllEnabled;
using AllDisabled = UserDataBackup::AllDisabled;
using Partial = UserDataBackup::Partial;

void collectUsage(StoreConnection& connection, UserDataBackup& backup) {
    StoreQuery query(connection, "SELECT char, usageCount, lastUsed FROM UnicodeChar "
                                 "INDEXED BY UnicodeChar_used WHERE usageCount > 0");
    while (query.step())
        backup.charUsage[query.string(0)] = {query.integer(1), query.time(2)};
}

/// What the switches of one block's characters are.
struct Switches {
    std::int64_t characters = 0;
    std::vector<std::string> enabled; ///< in the order of the rows
};

void collectBlocks(StoreConnection& connection, UserDataBackup& backup) {
    std::map<std::string, Switches, std::less<>> switches;
    for (StoreQuery query(connection, "SELECT unicodeBlock, char, isEnabled FROM UnicodeChar ORDER BY id");
         query.step();) {
        auto place = switches.find(query.text(0));
        if (place == switches.end())
            place = switches.emplace(query.string(0), Switches{}).first;
        ++place->second.characters;
        if (query.flag(2))
            place->second.enabled.push_back(query.string(1));
    }
    for (StoreQuery query(connection, "SELECT name, isEnabled FROM UnicodeBlock"); query.step();) {
        auto& [characters, enabled] = switches[query.string(0)];
        auto& state = backup.blockStates[query.string(0)];
        if (characters == 0 ? query.flag(1) : std::ssize(enabled) == characters)
            state = AllEnabled{};
        else if (enabled.empty())
            state = AllDisabled{};
        else
            state = Partial{std::move(enabled)};
    }
}

/// A use more can still be counted.
std::int64_t countable(std::int64_t count) {
    return std::clamp<std::int64_t>(count, 0, std::numeric_limits<std::int64_t>::max() / 2);
}

/// Which characters of a block a backup wants on.
class Wanted {
public:
    explicit Wanted(const UserDataBackup::BlockState& state)
        : all_(std::holds_alternative<AllEnabled>(state)) {
        if (const auto* const partial = std::get_if<Partial>(&state))
            some_.insert(partial->enabledChars.begin(), partial->enabledChars.end());
    }
    bool isOn(std::string_view character) const { return all_ || some_.contains(character); }

private:
    bool all_;
    std::unordered_set<std::string_view> some_;
};

/// The ids of the characters whose switch differs from the backup's.
std::vector<std::int64_t> wronglySwitched(StoreConnection& connection, const UserDataBackup& backup) {
    std::map<std::string_view, Wanted> wanted;
    for (const auto& [block, state] : backup.blockStates)
        wanted.emplace(block, Wanted(state));
    std::vector<std::int64_t> ids;
    for (StoreQuery query(connection, "SELECT id, unicodeBlock, char, isEnabled FROM UnicodeChar");
         query.step();) {
        const auto block = wanted.find(query.text(1));
        if (block != wanted.end() && block->second.isOn(query.text(2)) != query.flag(3))
            ids.push_back(query.integer(0));
    }
    return ids;
}

void restoreSwitches(StoreConnection& connection, const UserDataBackup& backup) {
    for (const auto id : wronglySwitched(connection, backup))
        StoreQuery(connection, "UPDATE UnicodeChar SET isEnabled = NOT isEnabled WHERE id = ?")
            .with(id)
            .run();
    for (const auto& [block, state] : backup.blockStates)
        updateBlockEnabled(connection, block, !std::holds_alternative<AllDisabled>(state));
}

} // namespace

Store::Result<UserDataBackup> Store::userData(Timestamp now) const {
    auto selections = termSelections();
    if (!selections)
        return std::unexpected(selections.error());
    auto& connection = *implementation_->connection;
    return connection.attempt([&] {
        UserDataBackup backup;
        backup.exportDate = now;
        collectUsage(connection, backup);
        for (auto& selection : *selections)
            backup.termSelections.push_back({std::move(selection.term), std::move(selection.character),
                                             selection.count, selection.lastUsed});
        collectBlocks(connection, backup);
        return backup;
    });
}

Store::Result<void> Store::restoreUserData(const UserDataBackup& backup) {
    auto& connection = *implementation_->connection;
    return write(connection, [&] {
        dropNotesOnEnabled(connection);
        for (const auto& [character, usage] : backup.charUsage)
            updateUsage(connection, character, countable(usage.count), usage.lastUsed);
        for (const auto& record : backup.termSelections) {
            auto selection = makeTermSelection(record.term, record.character, record.lastUsed);
            selection.count = countable(record.count);
            upsertTermSelection(connection, selection);
        }
        restoreSwitches(connection, backup);
    });
}

} // namespace glyma
