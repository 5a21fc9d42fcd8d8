#pragma once

#include "platform/installed_applications.h"
#include "platform/linux/xdg/desktop_entry.h"

#include <filesystem>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace glyma::xdg {

/// How a window names the application it belongs to; what it does not tell is empty.
struct WindowIdentity {
    std::string applicationId;   ///< _GTK_APPLICATION_ID, _KDE_NET_WM_DESKTOP_FILE or an xdg-toplevel's id
    std::string wmClassInstance; ///< first string of WM_CLASS
    std::string wmClassName;     ///< second string of WM_CLASS
};

/// The desktop entries of the system. Ids are as that specification forms them: the path below "applications"
/// with dashes for slashes, without ".desktop". Any thread.
class DesktopEntries : public InstalledApplications {
public:
    /// \param dataFolders  those of Folders::systemData, the first of two entries with one id counts.
    /// \param searchPath   PATH, for entries that name the program they need.
    DesktopEntries(const std::vector<std::filesystem::path>& dataFolders, const std::string& searchPath);

    /// Looks at the files that the id may name, not at all entries.
    bool isInstalled(std::string_view identifier) const override;

    /// The desktop-entry id of a window's application; the lower-cased window class where no entry fits,
    /// nothing for a window that says nothing. Reads all entries at the first call and after a change of
    /// their folders.
    std::optional<std::string> identifierFor(const WindowIdentity& window) const;

private:
    struct Index {
        std::map<std::string, std::string, std::less<>> byWindowClass;
        std::map<std::string, std::string, std::less<>> byLowerCaseWindowClass;
        std::map<std::string, std::string, std::less<>> byLowerCaseId;
        std::vector<std::pair<std::filesystem::path, std::filesystem::file_time_type>> folders;
    };

    Index buildIndex() const;
    static bool isCurrent(const Index& index);
    std::optional<std::string> indexed(const WindowIdentity& window) const;
    /// The entry, if it can be started here.
    std::optional<DesktopEntry> startable(const std::filesystem::path& file) const;
    bool isProgram(const std::string& name) const;

    std::vector<std::filesystem::path> applicationFolders_;
    std::vector<std::filesystem::path> searchPath_;
    mutable std::mutex mutex_;
    mutable std::optional<Index> index_;
};

} // namespace glyma::xdg
