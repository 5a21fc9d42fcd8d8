#pragma once

#include "data/store.h"

#include <expected>
#include <string>

namespace glyma {

/// Copies what was learned from the user and what the user has switched on or off from one store to a freshly
/// built one, all of it or nothing. Characters and blocks that the new store does not have are left out.
std::expected<void, std::string> carryLearnedDataOver(const Store& from, Store& to);

} // namespace glyma
