#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace glyma {

/// How an application presents itself to the user.
struct InstalledApplication {
    std::string identifier; ///< desktop-entry id
    std::string name;       ///< in the user's language
    std::string icon;       ///< a name of the icon theme or a file's absolute path; may be empty
    bool operator==(const InstalledApplication&) const = default;
};

/// The applications a user can start here. Any thread.
class InstalledApplications {
public:
    virtual ~InstalledApplications() = default;
    /// Whether an application with this desktop-entry id is installed.
    virtual bool isInstalled(std::string_view identifier) const = 0;
    virtual std::optional<InstalledApplication> find(std::string_view identifier) const = 0;
    /// Those that have windows of their own and stand in menus; any order. Reads all entries.
    virtual std::vector<InstalledApplication> withWindows() const = 0;
};

} // namespace glyma
