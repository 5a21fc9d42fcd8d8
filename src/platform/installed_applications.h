#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace glyma {

/// The applications a user can start here. Any thread.
class InstalledApplications {
public:
    virtual ~InstalledApplications() = default;
    /// Whether an application with this desktop-entry id is installed.
    virtual bool isInstalled(std::string_view identifier) const = 0;
};

} // namespace glyma
