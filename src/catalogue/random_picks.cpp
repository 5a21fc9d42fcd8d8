#include "catalogue/random_picks.h"

#include "catalogue/catalogue_values.h"
#include "catalogue/skin_tone.h"
#include "data/block_tables.h"
#include "data/json_date.h"
#include "unicode/properties.h"
#include "unicode/text.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <set>

namespace glyma {

namespace {

constexpr std::size_t historyLimit = 500;
constexpr std::array<std::string_view, 5> skinTones{"\U0001F3FB", "\U0001F3FC", "\U0001F3FD", "\U0001F3FE",
                                                    "\U0001F3FF"};

std::set<std::string> storedSet(const SettingsStore& settings, const std::string& key) {
    try {
        if (const auto stored = settings.value(key))
            return stored->get<std::set<std::string>>();
    } catch (const nlohmann::json::exception&) {
        // Counts as empty: a new cycle.
    }
    return {};
}

std::optional<std::string> storedText(const SettingsStore& settings, const std::string& key) {
    const auto stored = settings.value(key);
    return stored && stored->is_string() ? std::optional(stored->get<std::string>()) : std::nullopt;
}

std::vector<std::string> without(const std::vector<std::string>& pool, const std::set<std::string>& used) {
    std::vector<std::string> candidates;
    std::ranges::copy_if(pool, std::back_inserter(candidates),
                         [&](const std::string& character) { return !used.contains(character); });
    return candidates;
}

} // namespace

bool isPoolEmoji(std::string_view character, std::string_view blockName) {
    return isEmojiBlock(blockName) && unicode::looksLikeEmoji(character);
}

std::vector<std::string> makeRandomEmojiPool(const CatalogueIndex& index) {
    std::vector<std::string> pool;
    for (std::uint32_t entry = 0; entry < index.indexedSize(); ++entry) {
        const auto character = index.character(entry);
        if (character.starts_with(specialPrefix) || !isPoolEmoji(character, index.blockName(entry)))
            continue;
        pool.emplace_back(character);
        if (std::ranges::any_of(unicode::scalars(character), unicode::isEmojiModifierBase))
            for (const auto tone : skinTones)
                pool.push_back(applySkinTone(character, std::string(tone)));
    }
    return pool;
}

std::vector<std::string> makeRandomDisplayPool(const CatalogueIndex& index, bool includesEmoji) {
    std::vector<std::string> pool;
    for (std::uint32_t entry = 0; entry < index.indexedSize(); ++entry) {
        const auto character = index.character(entry);
        const auto blockName = index.blockName(entry);
        if (!character.starts_with(specialPrefix) && blockName != userReplacementsBlock &&
            (includesEmoji || !isPoolEmoji(character, blockName)))
            pool.emplace_back(character);
    }
    return pool;
}

RandomDraw::RandomDraw(SettingsStore& settings, bool isEmoji)
    : settings_(settings)
    , key_(isEmoji ? "glymaRandomEmojiUsedChars" : "glymaRandomUsedChars") {}

std::string RandomDraw::draw(const std::vector<std::string>& pool, RandomGenerator& random) {
    auto used = storedSet(settings_, key_);
    auto candidates = without(pool, used);
    if (candidates.empty()) {
        used.clear();
        candidates = pool;
        if (const auto last = storedText(settings_, key_ + ".last"); last && pool.size() > 1)
            std::erase(candidates, *last);
        if (candidates.empty())
            candidates = pool;
    }
    std::uniform_int_distribution<std::size_t> place(0, candidates.size() - 1);
    auto pick = candidates[place(random)];
    used.insert(pick);
    settings_.set(key_ + ".last", pick);
    settings_.set(key_, used);
    return pick;
}

RandomPickHistory::RandomPickHistory(SettingsStore& settings, bool isEmoji)
    : settings_(settings)
    , key_(isEmoji ? "debug.randomEmojiHistory" : "debug.randomUnicodeHistory") {}

std::vector<RandomPickRecord> RandomPickHistory::load() const {
    std::vector<RandomPickRecord> records;
    try {
        if (const auto stored = settings_.value(key_))
            for (const auto& record : stored->get<std::vector<nlohmann::json>>())
                records.push_back(
                    {record.at("char").get<std::string>(), fromJsonDate(record.at("date").get<double>())});
    } catch (const nlohmann::json::exception&) {
        return {};
    }
    return records;
}

void RandomPickHistory::record(const std::string& character, Timestamp date) {
    auto records = load();
    records.push_back({character, date});
    const auto surplus = records.size() > historyLimit ? records.size() - historyLimit : 0;
    auto stored = nlohmann::json::array();
    for (const auto& record : std::span(records).subspan(surplus))
        stored.push_back({{"char", record.character}, {"date", toJsonDate(record.date)}});
    settings_.set(key_, std::move(stored));
}

void RandomPickHistory::clear() {
    settings_.remove(key_);
}

} // namespace glyma
