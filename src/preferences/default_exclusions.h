#pragma once

#include "platform/installed_applications.h"
#include "preferences/records.h"

#include <vector>

namespace glyma {

/// The applications in which the picker starts switched off, as far as they are installed: terminals, modal
/// editors, programming environments and a chat program that complete ":" themselves.
std::vector<ExcludedApp> defaultExcludedApps(const InstalledApplications& applications);

/// Sites that complete ":" themselves or where it means something else.
std::vector<ExcludedWebsite> defaultExcludedWebsites();

} // namespace glyma
