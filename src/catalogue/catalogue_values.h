#pragma once

#include "platform/scheduler.h"

#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace glyma {

/// How an entry's total came about.
struct RankingInfo {
    std::int64_t textScore = 0;
    std::int64_t popularityBonus = 0;
    std::int64_t usageBonus = 0;
    std::int64_t termBonus = 0;
    std::int64_t cacheBonus = 0;

    /// Ends the program when the sum overflows.
    std::int64_t total() const;
    /// "text:130 pop:30 usage:0 term:0 cache:150 = 310"
    std::string displayText() const;
    bool operator==(const RankingInfo&) const = default;
};

/// Block name of the user's snippets.
inline constexpr std::string_view userReplacementsBlock = "User Replacements";
/// What the `character` of the special entries begins with.
inline constexpr std::string_view specialPrefix = "special:";
inline constexpr std::int64_t notRanked = std::numeric_limits<std::int64_t>::max();

/// Something the picker can insert.
struct EmojiEntry {
    std::string character; ///< what is inserted; for a special entry "special:" and its id
    std::string name;
    std::vector<std::string> keywords;
    std::string unicodeBlock;
    std::string foldedName;
    std::vector<std::string> foldedKeywords;
    std::int64_t usageCount = 0;
    std::optional<Timestamp> lastUsed;
    std::int64_t popularityRank = notRanked; ///< 0 is the most popular
    bool isCached = false;                   ///< lives in the in-memory index
    std::optional<RankingInfo> rankingInfo;  ///< on entries that a search returned
    bool operator==(const EmojiEntry&) const = default;
};

/// An entry that stands for an action.
struct SpecialEntry {
    std::string id;
    std::string name;
    std::vector<std::string> keywords;
    std::optional<RankingInfo> rankingInfo;
    bool operator==(const SpecialEntry&) const = default;
};

using PickerItem = std::variant<EmojiEntry, SpecialEntry>;

/// An entry whose character begins with specialPrefix becomes special.
PickerItem toPickerItem(EmojiEntry entry);

/// Keeps a row stable across lists: the character, or "s:" and the special's id.
std::string identity(const PickerItem& item);

struct UsageRecord {
    std::int64_t count = 0;
    Timestamp lastUsed;
    bool operator==(const UsageRecord&) const = default;
};

} // namespace glyma
