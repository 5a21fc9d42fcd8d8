#include "catalogue/enabled_changes.h"

#include <algorithm>

namespace glyma {

namespace {

Store::Result<void> storeOne(Store& store, const EnabledChange& change) {
    if (!change.characters) {
        if (auto set = store.setCharactersEnabled(change.blockName, change.areEnabled); !set)
            return set;
    } else {
        for (const auto& character : *change.characters)
            if (auto set = store.setCharacterEnabled(character, change.areEnabled); !set)
                return set;
    }
    return store.setBlockEnabled(change.blockName, change.isBlockEnabled);
}

} // namespace

void EnabledChanges::add(EnabledChange change) {
    const std::lock_guard lock(mutex_);
    changes_.push_back(std::move(change));
}

bool EnabledChanges::empty() const {
    const std::lock_guard lock(mutex_);
    return changes_.empty();
}

std::expected<void, std::string> EnabledChanges::storeInto(Store& store) {
    const std::lock_guard storing(storing_);
    const auto changes = [this] {
        const std::lock_guard lock(mutex_);
        return changes_;
    }();
    if (changes.empty())
        return {};
    auto transaction = store.begin();
    if (!transaction)
        return std::unexpected(transaction.error());
    for (const auto& change : changes)
        if (auto stored = storeOne(store, change); !stored)
            return stored;
    if (auto committed = transaction->commit(); !committed)
        return committed;
    const std::lock_guard lock(mutex_);
    changes_.erase(changes_.begin(), changes_.begin() + static_cast<std::ptrdiff_t>(changes.size()));
    return {};
}

void EnabledChanges::applyTo(std::span<UnicodeBlock> blocks) const {
    const std::lock_guard lock(mutex_);
    for (const auto& change : changes_)
        if (const auto block = std::ranges::find(blocks, change.blockName, &UnicodeBlock::name);
            block != blocks.end())
            block->isEnabled = change.isBlockEnabled;
}

void EnabledChanges::applyTo(std::span<UnicodeChar> characters) const {
    const std::lock_guard lock(mutex_);
    for (const auto& change : changes_)
        for (auto& record : characters)
            if (record.unicodeBlock == change.blockName &&
                (!change.characters ||
                 std::ranges::find(*change.characters, record.character) != change.characters->end()))
                record.isEnabled = change.areEnabled;
}

} // namespace glyma
