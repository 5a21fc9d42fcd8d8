#include "preferences/tabs/exclusions.h"

#include "text/page_address.h"
#include "unicode/collation.h"
#include "unicode/host_name.h"
#include "unicode/properties.h"
#include "unicode/text.h"

#include <algorithm>

namespace glyma {

namespace {

std::string_view trimmed(std::string_view text) {
    std::size_t first = text.size(), end = 0;
    for (std::size_t offset = 0; offset < text.size();) {
        const auto start = offset;
        if (!unicode::isWhiteSpace(unicode::nextScalar(text, offset))) {
            first = std::min(first, start);
            end = offset;
        }
    }
    return first < end ? text.substr(first, end - first) : std::string_view();
}

/// An IP address of version 6, without its brackets.
bool isNumericHost(std::string_view host) {
    return host.find(':') != host.npos && host.find_first_not_of("0123456789abcdefABCDEF:.") == host.npos;
}

/// Whether what follows the host's colon, if there is one, can be a port.
bool hasValidPort(std::string_view address) {
    const auto start = address.find("://") + 3;
    auto authority = address.substr(start, address.find_first_of("/?#", start) - start);
    authority = authority.substr(authority.rfind('@') + 1);
    const auto colon = authority.rfind(':');
    if (colon == authority.npos || authority.ends_with(']'))
        return true;
    const auto port = authority.substr(colon + 1);
    return !port.empty() && port.find_first_not_of("0123456789") == port.npos;
}

template<typename Record>
bool isListed(std::span<const Record> list, std::string Record::*key, std::string_view value) {
    return std::ranges::find(list, value, key) != list.end();
}

template<typename Record>
std::vector<Record> without(std::vector<Record> list, std::string Record::*key, std::string_view value) {
    std::erase_if(list, [&](const Record& record) { return record.*key == value; });
    return list;
}

template<typename Record>
std::vector<Record> switched(std::vector<Record> list, std::string Record::*key, std::string_view value,
                             bool isExcluded) {
    for (auto& record : list)
        if (record.*key == value)
            record.isExcluded = isExcluded;
    return list;
}

} // namespace

std::expected<std::string, DomainProblem> domainIn(std::string_view text) {
    text = trimmed(text);
    if (text.starts_with("*"))
        text.remove_prefix(1);
    if (text.starts_with("."))
        text.remove_prefix(1);
    if (text.empty())
        return std::unexpected(DomainProblem::empty);
    auto address = text.find("://") == text.npos ? "https://" + std::string(text) : std::string(text);
    auto host = pageHostOf(address);
    if (host.ends_with('.'))
        host.pop_back();
    if (!hasValidPort(address))
        host.clear();
    if (isNumericHost(host))
        return host;
    auto ascii = unicode::asciiHostName(host);
    return ascii ? std::expected<std::string, DomainProblem>(*std::move(ascii))
                 : std::unexpected(DomainProblem::notADomain);
}

std::vector<std::string> hostsToOffer(std::span<const std::string> addresses,
                                      std::span<const ExcludedWebsite> listed) {
    std::vector<std::string> hosts;
    for (const auto& address : addresses)
        if (auto host = pageHostOf(address); !host.empty() &&
                                             !isListed(listed, &ExcludedWebsite::domain, host) &&
                                             std::ranges::find(hosts, host) == hosts.end())
            hosts.push_back(std::move(host));
    return hosts;
}

std::vector<InstalledApplication> applicationsToOffer(const InstalledApplications& installed,
                                                      std::span<const ExcludedApp> listed) {
    auto applications = installed.withWindows();
    std::erase_if(applications, [&](const InstalledApplication& application) {
        return isListed(listed, &ExcludedApp::bundleID, application.identifier);
    });
    std::ranges::sort(applications, {}, &InstalledApplication::identifier);
    const unicode::Collator collator;
    std::ranges::stable_sort(
        applications,
        [&](const std::string& left, const std::string& right) { return collator.less(left, right); },
        &InstalledApplication::name);
    return applications;
}

std::expected<std::string, DomainProblem> addExcludedWebsite(UserPreferences& preferences,
                                                             std::string_view text) {
    auto domain = domainIn(text);
    if (!domain)
        return domain;
    auto websites = preferences.excludedWebsites();
    if (isListed(std::span<const ExcludedWebsite>(websites), &ExcludedWebsite::domain, *domain))
        return std::unexpected(DomainProblem::listedAlready);
    websites.push_back({.domain = *domain});
    preferences.setExcludedWebsites(websites);
    return domain;
}

void addExcludedApp(UserPreferences& preferences, const InstalledApplication& application) {
    auto apps = preferences.excludedApps();
    if (isListed(std::span<const ExcludedApp>(apps), &ExcludedApp::bundleID, application.identifier))
        return;
    apps.push_back({.bundleID = application.identifier, .name = application.name});
    preferences.setExcludedApps(apps);
}

void removeExcludedWebsite(UserPreferences& preferences, std::string_view domain) {
    preferences.setExcludedWebsites(
        without(preferences.excludedWebsites(), &ExcludedWebsite::domain, domain));
}

void removeExcludedApp(UserPreferences& preferences, std::string_view bundleID) {
    preferences.setExcludedApps(without(preferences.excludedApps(), &ExcludedApp::bundleID, bundleID));
}

void setWebsiteExcluded(UserPreferences& preferences, std::string_view domain, bool isExcluded) {
    preferences.setExcludedWebsites(
        switched(preferences.excludedWebsites(), &ExcludedWebsite::domain, domain, isExcluded));
}

void setAppExcluded(UserPreferences& preferences, std::string_view bundleID, bool isExcluded) {
    preferences.setExcludedApps(
        switched(preferences.excludedApps(), &ExcludedApp::bundleID, bundleID, isExcluded));
}

} // namespace glyma
