#pragma once

#include "platform/scheduler.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace glyma {

/// Whole days between two instants, truncated: negative for the future.
std::int64_t elapsedDays(Timestamp from, Timestamp to);

struct EntryUse {
    std::uint32_t entry = 0;
    std::int64_t count = 0;
    std::optional<Timestamp> lastUsed;
    bool operator==(const EntryUse&) const = default;
};

/// Points for how often and how recently an entry was chosen.
std::int64_t usageBonus(const EntryUse& use, Timestamp now);

/// The use of the entries that were ever used, by their number.
class UseByEntry {
public:
    /// \return null when the entry was never used.
    const EntryUse* find(std::uint32_t entry) const;
    void set(const EntryUse& use);
    /// In entry order.
    const std::vector<EntryUse>& all() const { return uses_; }

private:
    std::vector<EntryUse> uses_;
};

} // namespace glyma
