#pragma once

#include "platform/installed_applications.h"
#include "preferences/user_preferences.h"

#include <expected>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// What the preferences do to the lists of exclusions. Main thread, unless said otherwise.
namespace glyma {

enum class DomainProblem {
    empty,
    notADomain,
    listedAlready, ///< perhaps switched off
};

/// The host in what the user typed or pasted: a domain or an address, with white space around it, a path, a
/// port, a user, "www.", "*." or a dot before it. Capitals stay. Any thread.
std::expected<std::string, DomainProblem> domainIn(std::string_view text);

/// The hosts of these addresses, each once, in the order of their first appearance, without those listed. Any
/// thread.
std::vector<std::string> hostsToOffer(std::span<const std::string> addresses,
                                      std::span<const ExcludedWebsite> listed);

/// Those not listed, by name.
std::vector<InstalledApplication> applicationsToOffer(const InstalledApplications& installed,
                                                      std::span<const ExcludedApp> listed);

/// \return the domain under which it is listed now.
std::expected<std::string, DomainProblem> addExcludedWebsite(UserPreferences& preferences,
                                                             std::string_view text);
/// Nothing changes when it is listed, switched on or off.
void addExcludedApp(UserPreferences& preferences, const InstalledApplication& application);
void removeExcludedWebsite(UserPreferences& preferences, std::string_view domain);
void removeExcludedApp(UserPreferences& preferences, std::string_view bundleID);
void setWebsiteExcluded(UserPreferences& preferences, std::string_view domain, bool isExcluded);
void setAppExcluded(UserPreferences& preferences, std::string_view bundleID, bool isExcluded);

} // namespace glyma
