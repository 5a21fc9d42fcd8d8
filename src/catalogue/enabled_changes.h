#pragma once

#include "data/store.h"

#include <deque>
#include <expected>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace glyma {

/// What one switching in the library changes: characters of one block, and with them the block.
struct EnabledChange {
    std::string blockName;
    bool isBlockEnabled = false;
    /// None: all of the block's.
    std::optional<std::vector<std::string>> characters;
    bool areEnabled = false;
};

/// The switchings that the store does not hold yet. They stay until they are stored, and count meanwhile.
/// Any thread.
class EnabledChanges {
public:
    void add(EnabledChange change);
    bool empty() const;
    /// Writes all of them in one transaction, or none; waits while another thread does.
    std::expected<void, std::string> storeInto(Store& store);

    // What the records say once they are stored.
    void applyTo(std::span<UnicodeBlock> blocks) const;
    /// \param characters  all of one block.
    void applyTo(std::span<UnicodeChar> characters) const;

private:
    std::mutex storing_;
    mutable std::mutex mutex_;
    std::deque<EnabledChange> changes_;
};

} // namespace glyma
