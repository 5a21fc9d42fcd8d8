#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace glyma::xdg {

/// What the program needs of a desktop entry. Strings are UTF-8 with the format's escapes undone.
struct DesktopEntry {
    std::string type;
    std::string name;
    std::string exec; ///< a command line, its quoting as in the file
    std::string tryExec;
    std::string startupWindowClass;
    bool isHidden = false; ///< as good as deleted
    bool isShown = true;   ///< in menus
    bool isAutostartEnabled = true;
    bool operator==(const DesktopEntry&) const = default;
};

/// Absent when the text has no group "Desktop Entry". Lines that mean nothing are skipped.
std::optional<DesktopEntry> parseDesktopEntry(std::string_view text);

/// Absent also when the file cannot be read or is larger than any such file.
std::optional<DesktopEntry> readDesktopEntry(const std::filesystem::path& file);

/// A program's path as the first word of a value of the key Exec.
std::string quotedForExec(std::string_view path);

} // namespace glyma::xdg
