#include "preferences/default_exclusions.h"

#include <array>
#include <string_view>

namespace glyma {

namespace {

struct Candidate {
    std::string_view identifier;
    std::string_view name;
};

/// Desktop-entry ids as Debian 12's packages and the vendors' own packages install them.
constexpr std::array candidates{
    Candidate{"net.quillaby.orrel", "Orrel"},
    Candidate{"kitty", "kitty"},
    Candidate{"Alacritty", "Alacritty"},
    Candidate{"foot", "Foot"},
    Candidate{"footclient", "Foot Client"},
    Candidate{"terminator", "Terminator"},
    Candidate{"com.gexperts.Tilix", "Tilix"},
    Candidate{"gvim", "GVim"},
    Candidate{"nvim-qt", "Neovim-Qt"},
    Candidate{"net.quillaby.vispen", "Vispen"},
    Candidate{"slack", "Slack"},
    Candidate{"com.slack.Slack", "Slack"},
    Candidate{"org.gnome.Terminal", "GNOME Terminal"},
    Candidate{"org.gnome.Console", "GNOME Console"},
    Candidate{"org.kde.konsole", "Konsole"},
    Candidate{"org.kde.yakuake", "Yakuake"},
    Candidate{"xfce4-terminal", "Xfce Terminal"},
    Candidate{"mate-terminal", "MATE Terminal"},
    Candidate{"lxterminal", "LXTerminal"},
    Candidate{"qterminal", "QTerminal"},
    Candidate{"guake", "Guake"},
    Candidate{"rxvt-unicode", "rxvt-unicode"},
    Candidate{"debian-xterm", "XTerm"},
    Candidate{"debian-uxterm", "UXTerm"},
    Candidate{"xterm", "XTerm"},
    Candidate{"code", "Visual Studio Code"},
    Candidate{"codium", "VSCodium"},
    Candidate{"org.gnome.Builder", "GNOME Builder"},
};

} // namespace

std::vector<ExcludedApp> defaultExcludedApps(const InstalledApplications& applications) {
    std::vector<ExcludedApp> excluded;
    for (const auto& [identifier, name] : candidates)
        if (applications.isInstalled(identifier))
            excluded.push_back({.bundleID = std::string(identifier), .name = std::string(name)});
    return excluded;
}

std::vector<ExcludedWebsite> defaultExcludedWebsites() {
    return {{.domain = "github.com"},
            {.domain = "google.com"},
            {.domain = "slack.com"},
            {.domain = "trello.com"}};
}

} // namespace glyma
