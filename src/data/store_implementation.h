#pragma once

#include "data/store_connection.h"

#include <memory>
#include <string_view>

namespace glyma {

struct Store::Implementation {
    std::unique_ptr<StoreConnection> connection;
};

/// Name of the note that is there while ids follow the order of orderedRows(); its value is how many rows
/// have keywords.
inline constexpr std::string_view orderedRowsNote = "rowsWithKeywords";

} // namespace glyma
