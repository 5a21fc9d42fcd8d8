#include "platform/linux/xdg/autostart_login_item.h"

#include "platform/linux/xdg/desktop_entry.h"
#include "platform/linux/xdg/files.h"

#include <fmt/format.h>

namespace glyma::xdg {

namespace fs = std::filesystem;

AutostartLoginItem::AutostartLoginItem(const fs::path& folder, fs::path executable)
    : file_(folder / "glyma.desktop")
    , executable_(std::move(executable)) {}

bool AutostartLoginItem::isEnabled() const {
    const auto entry = readDesktopEntry(file_);
    return entry && entry->type == "Application" && !entry->exec.empty() && !entry->isHidden &&
           entry->isAutostartEnabled;
}

std::expected<void, std::string> AutostartLoginItem::enable() {
    if (executable_.empty())
        return std::unexpected("the program does not know where it is installed");
    if (const auto made = makePrivateFolder(file_.parent_path()); !made)
        return std::unexpected(fmt::format("{}: {}", file_.parent_path().string(), made.error().message()));
    const auto text = fmt::format("[Desktop Entry]\n"
                                  "Type=Application\n"
                                  "Name=Glyma\n"
                                  "Comment=Type any emoji, symbol or snippet into any application\n"
                                  "Exec={}\n"
                                  "Icon=glyma\n"
                                  "Terminal=false\n"
                                  "StartupNotify=false\n"
                                  "X-GNOME-Autostart-enabled=true\n",
                                  quotedForExec(executable_.string()));
    if (const auto replaced = replaceFile(file_, text, 0644); !replaced)
        return std::unexpected(fmt::format("{}: {}", file_.string(), replaced.error().message()));
    return {};
}

std::expected<void, std::string> AutostartLoginItem::disable() {
    std::error_code error;
    fs::remove(file_, error);
    if (error)
        return std::unexpected(fmt::format("{}: {}", file_.string(), error.message()));
    return {};
}

} // namespace glyma::xdg
