#pragma once

#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace glyma::xdg {

/// What the program needs of a desktop entry. Strings are UTF-8 with the format's escapes undone.
struct DesktopEntry {
    std::string type;
    std::string name; ///< in the first of the languages asked for, else untranslated
    std::string icon;
    std::string exec; ///< a command line, its quoting as in the file
    std::string tryExec;
    std::string startupWindowClass;
    bool isHidden = false; ///< as good as deleted
    bool isShown = true;   ///< in menus
    bool needsTerminal = false;
    bool isAutostartEnabled = true;
    bool operator==(const DesktopEntry&) const = default;
};

/// Absent when the text has no group "Desktop Entry". Lines that mean nothing are skipped.
/// \param languages  see languagesOf(); best first.
std::optional<DesktopEntry> parseDesktopEntry(std::string_view text,
                                              std::span<const std::string> languages = {});

/// Absent also when the file cannot be read or is larger than any such file.
std::optional<DesktopEntry> readDesktopEntry(const std::filesystem::path& file,
                                             std::span<const std::string> languages = {});

/// The keys under which a translation for a locale ("de_AT.UTF-8@euro") may stand, best first ("de_AT@euro",
/// "de_AT", "de@euro", "de").
std::vector<std::string> languagesOf(std::string_view locale);

/// The name of the program that a value of the key Exec starts, without its folder; empty when there is none.
std::string programOf(std::string_view exec);

/// A program's path as the first word of a value of the key Exec.
std::string quotedForExec(std::string_view path);

} // namespace glyma::xdg
