#pragma once

#include "data/store_connection.h"

#include <memory>
#include <stdexcept>

namespace glyma {

/// The file itself is at fault that it cannot be used: it is no store, damaged or of another version.
class UnusableStore : public std::runtime_error {
public:
    using runtime_error::runtime_error;
};

/// Opens the file and makes sure that it is a store of the current version, creating the tables in a new or
/// empty one. Throws std::exception with the reason; an existing file is then unchanged.
std::unique_ptr<StoreConnection> openStoreConnection(const std::filesystem::path& file);

/// The secondary indexes of UnicodeChar, the unique one included, apart from the table: filling the table
/// first and indexing it afterwards takes half the time.
void createCharacterIndexes(StoreConnection& connection);
void dropCharacterIndexes(StoreConnection& connection);

} // namespace glyma
