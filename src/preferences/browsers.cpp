#include "preferences/browsers.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>

namespace glyma {

namespace {

/// Browsers that tell the address of the page through accessibility, by the desktop-entry ids of
/// distributions, vendors, Flatpak and Snap.
constexpr std::array<std::string_view, 41> browsers{
    // Gecko
    "firefox",
    "firefox-esr",
    "firefox-beta",
    "firefox-developer-edition",
    "firefox-nightly",
    "firefox_firefox",
    "org.mozilla.firefox",
    "icecat",
    "librewolf",
    "io.gitlab.librewolf-community",
    "torbrowser",
    "org.torproject.torbrowser-launcher",
    "waterfox",
    "net.waterfox.waterfox",
    "zen",
    "app.zen_browser.zen",
    // Chromium
    "chromium",
    "chromium-browser",
    "chromium_chromium",
    "org.chromium.Chromium",
    "io.github.ungoogled_software.ungoogled_chromium",
    "google-chrome",
    "google-chrome-beta",
    "google-chrome-unstable",
    "com.google.Chrome",
    "brave-browser",
    "brave_brave",
    "com.brave.Browser",
    "microsoft-edge",
    "com.microsoft.Edge",
    "opera",
    "opera_opera",
    "com.opera.Opera",
    "vivaldi-stable",
    "com.vivaldi.Vivaldi",
    // WebKitGTK, Qt WebEngine
    "org.gnome.Epiphany",
    "epiphany",
    "org.kde.falkon",
    "falkon",
    "org.kde.konqueror",
    "org.qutebrowser.qutebrowser",
};

} // namespace

Browsers parseBrowsers(const nlohmann::json& value) {
    Browsers parsed;
    if (!value.is_object())
        return parsed;
    for (const auto& [identifier, isBrowser] : value.items())
        if (isBrowser.is_boolean())
            parsed.emplace(identifier, isBrowser.get<bool>());
    return parsed;
}

bool isKnownBrowser(std::string_view identifier) {
    return std::ranges::find(browsers, identifier) != browsers.end();
}

} // namespace glyma
