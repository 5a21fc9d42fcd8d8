#include "monitor/website_exclusion.h"

#include <algorithm>

namespace glyma {

bool isExcludedHost(std::string_view host, const std::vector<ExcludedWebsite>& websites) {
    return std::ranges::any_of(websites, [host](const ExcludedWebsite& website) {
        return website.isExcluded && !website.domain.empty() && host.ends_with(website.domain);
    });
}

bool isExcludedWebsite(const std::optional<std::string>& applicationIdentifier, const TextInserter& text,
                       const UserPreferences& preferences) {
    if (!applicationIdentifier || !preferences.isBrowser(*applicationIdentifier))
        return false;
    const auto host = text.pageHost();
    if (!host)
        return !text.hidesPages();
    return !host->empty() && isExcludedHost(*host, preferences.excludedWebsites());
}

} // namespace glyma
