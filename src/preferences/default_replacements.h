#pragma once

#include "preferences/records.h"

#include <vector>

namespace glyma {

/// The snippets of a user who has not edited them, each with a fresh identifier.
std::vector<UserReplacement> defaultReplacements();

} // namespace glyma
