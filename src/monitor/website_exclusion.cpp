#include "monitor/website_exclusion.h"

#include <algorithm>

namespace glyma {

bool isExcludedHost(std::string_view host, const std::vector<ExcludedWebsite>& websites) {
    return std::ranges::any_of(websites, [host](const ExcludedWebsite& website) {
        return website.isExcluded && !website.domain.empty() && host.ends_with(website.domain);
    });
}

std::optional<bool> isExcludedPage(const FocusedPage& page, const std::vector<ExcludedWebsite>& websites) {
    switch (page.place) {
    case FocusedPage::Place::inside:
        return !page.host.empty() && isExcludedHost(page.host, websites);
    case FocusedPage::Place::outside:
        return true;
    case FocusedPage::Place::unreadable:
        return false;
    case FocusedPage::Place::unanswered:
        break;
    }
    return std::nullopt;
}

std::optional<bool> isExcludedWebsite(const std::optional<std::string>& applicationIdentifier,
                                      const TextInserter& text, const UserPreferences& preferences) {
    if (!applicationIdentifier || !preferences.isBrowser(*applicationIdentifier))
        return false;
    return isExcludedPage(text.focusedPage(), preferences.excludedWebsites());
}

} // namespace glyma
