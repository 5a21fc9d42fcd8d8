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

/// Whether the page is one in which a trigger is to be left alone: in a browser it works in pages only, and
/// not in those of excluded sites. A browser that lets nobody read its pages is an application like any
/// other, else the trigger would never work there.
/// \return absent while the browser has not answered.
std::optional<bool> isExcludedPage(const FocusedPage& page, const std::vector<ExcludedWebsite>& websites);

/// The same for the element that `text` remembers, in whatever application; what is no browser is not asked.
/// Main thread.
std::optional<bool> isExcludedWebsite(const std::optional<std::string>& applicationIdentifier,
                                      const TextInserter& text, const UserPreferences& preferences);

} // namespace glyma
