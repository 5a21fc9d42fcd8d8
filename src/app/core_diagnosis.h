#pragma once

#include "app/diagnosis.h"
#include "app/foundation.h"

#include <vector>

namespace glyma {

/// What needs no desktop: settings, reference files, store, fonts. Changes nothing.
std::vector<Diagnosis> diagnoseCore(Foundation& foundation);

} // namespace glyma
