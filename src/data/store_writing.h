#pragma once

#include "data/store_connection.h"

#include <cstdint>
#include <optional>
#include <string_view>

/// Steps of writing that several of the store's calls are made of. All inside the caller's StoreWriteScope.
namespace glyma {

/// The rows' order stays true when characters are only switched on or off; other notes do not.
void dropNotesOnEnabled(StoreConnection& connection);
void updateUsage(StoreConnection& connection, std::string_view character, std::int64_t usageCount,
                 const std::optional<Timestamp>& lastUsed);
void upsertTermSelection(StoreConnection& connection, const TermSelection& selection);
void updateBlockEnabled(StoreConnection& connection, std::string_view blockName, bool enabled);

template<typename Work>
Store::Result<void> write(StoreConnection& connection, Work&& work) {
    return connection.attempt([&] {
        StoreWriteScope scope(connection);
        work();
        scope.commit();
    });
}

} // namespace glyma
