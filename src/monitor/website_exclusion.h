#pragma once

#include "preferences/records.h"
#include "preferences/user_preferences.h"
#include "text/text_inserter.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace glyma {

/// \param host  of a page, without "www.".
/// \return whether it ends with an excluded domain, letter for letter.
bool isExcludedHost(std::string_view host, const std::vector<ExcludedWebsite>& websites);

/// Whether a trigger typed in this application is to be left alone for the sake of the page it was typed in.
/// In a browser the trigger works in pages only, and not in those of excluded sites. A browser that lets
/// nobody read its pages is an application like any other, else the trigger would never work there.
///
/// Asks about the element that `text` remembers. Main thread.
bool isExcludedWebsite(const std::optional<std::string>& applicationIdentifier, const TextInserter& text,
                       const UserPreferences& preferences);

} // namespace glyma
