#include "app/learned_data.h"

#include <map>
#include <utility>

namespace glyma {

namespace {

using Outcome = std::expected<void, std::string>;

Outcome carryUses(const Store& from, Store& to) {
    const auto used = from.usedCharacters();
    if (!used)
        return std::unexpected(used.error());
    for (const auto& character : *used) {
        if (auto set = to.setUsage(character.character, character.usageCount, character.lastUsed); !set)
            return set;
    }
    const auto selections = from.termSelections();
    if (!selections)
        return std::unexpected(selections.error());
    return to.insertTermSelections(*selections);
}

Outcome carrySwitchesOfBlock(const Store& from, Store& to, const std::string& block) {
    const auto before = from.charactersInBlock(block);
    const auto now = to.charactersInBlock(block);
    if (!before || !now)
        return std::unexpected(before ? now.error() : before.error());
    std::map<std::string_view, bool> enabledBefore;
    for (const auto& character : *before)
        enabledBefore.emplace(character.character, character.isEnabled);
    for (const auto& character : *now) {
        const auto place = enabledBefore.find(character.character);
        if (place == enabledBefore.end() || place->second == character.isEnabled)
            continue;
        if (auto set = to.setCharacterEnabled(character.character, place->second); !set)
            return set;
    }
    return {};
}

Outcome carrySwitches(const Store& from, Store& to) {
    const auto blocks = from.blocks();
    if (!blocks)
        return std::unexpected(blocks.error());
    for (const auto& block : *blocks) {
        if (auto set = to.setBlockEnabled(block.name, block.isEnabled); !set)
            return set;
        if (auto carried = carrySwitchesOfBlock(from, to, block.name); !carried)
            return carried;
    }
    return {};
}

} // namespace

std::expected<void, std::string> carryLearnedDataOver(const Store& from, Store& to) {
    auto transaction = to.begin();
    if (!transaction)
        return std::unexpected(transaction.error());
    if (auto carried = carryUses(from, to); !carried)
        return carried;
    if (auto carried = carrySwitches(from, to); !carried)
        return carried;
    return transaction->commit();
}

} // namespace glyma
