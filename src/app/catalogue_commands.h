#pragma once

#include "app/command_line.h"
#include "app/foundation.h"

namespace glyma {

/// Builds the catalogue when there is none. \return the exit status; not done: the reason has been said.
int ensureCatalogue(Foundation& foundation);

/// Prints what matches. Builds the catalogue first when there is none. Learns nothing. \return the exit
/// status.
int runSearch(const SearchCommand& command, Foundation& foundation);

/// Builds the catalogue. \return the exit status.
int runImport(const ImportCommand& command, Foundation& foundation);

} // namespace glyma
