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

std::expected<void, Message> AutostartLoginItem::enable() {
    if (executable_.empty())
        return std::unexpected(
            Message::tr("Glyma cannot be started at login: it does not know where it is installed. Install "
                        "it again."));
    const auto text = entryText();
    constexpr std::size_t sizeLimit = 64 * 1024;
    if (const auto present = readFile(file_, sizeLimit); present && *present == text)
        return {};
    if (const auto made = makePrivateFolder(file_.parent_path()); !made)
        return std::unexpected(
            Message::tr("Glyma cannot be started at login: the folder %1 cannot be made (%2). Check the "
                        "permissions of the folder that it belongs in.")
                .arg(file_.parent_path().string())
                .arg(made.error().message()));
    if (const auto replaced = replaceFile(file_, text, 0644); !replaced)
        return std::unexpected(
            Message::tr("Glyma cannot be started at login: %1 cannot be written (%2). Make its folder "
                        "writable, and see that the disk is not full.")
                .arg(file_.string())
                .arg(replaced.error().message()));
    return {};
}

std::expected<void, Message> AutostartLoginItem::disable() {
    std::error_code error;
    fs::remove(file_, error);
    if (error)
        return std::unexpected(
            Message::tr(
                "Glyma is still started at login: %1 cannot be removed (%2). Make its folder writable.")
                .arg(file_.string())
                .arg(error.message()));
    return {};
}

std::string AutostartLoginItem::entryText() const {
    return fmt::format("[Desktop Entry]\n"
                       "Type=Application\n"
                       "Name=Glyma\n"
                       "Comment=Type any emoji, symbol or snippet into any application\n"
                       "Comment[de]=Jedes Emoji, Zeichen oder Textstück in jede Anwendung tippen\n"
                       "Exec={}\n"
                       "Icon=glyma\n"
                       "Terminal=false\n"
                       "StartupNotify=false\n"
                       "X-GNOME-Autostart-enabled=true\n",
                       quotedForExec(executable_.string()));
}

} // namespace glyma::xdg
