#pragma once

#include "catalogue/catalogue_index.h"
#include "platform/scheduler.h"
#include "platform/settings_store.h"

#include <functional>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

/// What the two random entries of the picker insert.
namespace glyma {

using RandomGenerator = std::mt19937_64;

/// The emoji of the index, those that take a skin tone six times: plain and in each tone.
std::vector<std::string> makeRandomEmojiPool(const CatalogueIndex& index);
/// What the icon of the random character cycles through; no special entries, no snippets.
std::vector<std::string> makeRandomDisplayPool(const CatalogueIndex& index, bool includesEmoji);
/// Whether a character counts as emoji for the pools.
bool isPoolEmoji(std::string_view character, std::string_view blockName);

/// Draws from a pool so that each character comes up once before any comes up again. The settings remember
/// what was drawn.
class RandomDraw {
public:
    explicit RandomDraw(SettingsStore& settings, bool isEmoji);

    /// \param pool  not empty; a duplicate has the chance of two.
    std::string draw(const std::vector<std::string>& pool, RandomGenerator& random);

private:
    SettingsStore& settings_;
    std::string key_;
};

struct RandomPickRecord {
    std::string character;
    Timestamp date;
};

/// The latest 500 picks of one kind, oldest first.
class RandomPickHistory {
public:
    RandomPickHistory(SettingsStore& settings, bool isEmoji);

    std::vector<RandomPickRecord> load() const;
    void record(const std::string& character, Timestamp date);
    void clear();

private:
    SettingsStore& settings_;
    std::string_view key_;
};

} // namespace glyma
