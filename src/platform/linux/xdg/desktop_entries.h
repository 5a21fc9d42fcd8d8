#pragma once

#include "platform/installed_applications.h"
#include "platform/linux/xdg/desktop_entry.h"

#include <filesystem>
#include <functional>
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
    /// \param locale       of the names, as LC_MESSAGES has it.
    DesktopEntries(const std::vector<std::filesystem::path>& dataFolders, const std::string& searchPath,
                   std::string_view locale = {});

    /// Looks at the files that the id may name, not at all entries.
    bool isInstalled(std::string_view identifier) const override;
    std::optional<InstalledApplication> find(std::string_view identifier) const override;
    std::vector<InstalledApplication> withWindows() const override;

    /// The desktop-entry id of a window's application; the lower-cased window class where no entry fits,
    /// nothing for a window that says nothing. Reads all entries at the first call and after a change of
    /// their folders.
    std::optional<std::string> identifierFor(const WindowIdentity& window) const;

    /// The application whose entry starts this program (a file name); absent also where several do, unless
    /// one of them is called after it. Reads as identifierFor() does.
    std::optional<InstalledApplication> findByProgram(std::string_view program) const;

private:
    using FolderTimes = std::vector<std::pair<std::filesystem::path, std::filesystem::file_time_type>>;

    struct Index {
        std::map<std::string, std::string, std::less<>> byWindowClass;
        std::map<std::string, std::string, std::less<>> byLowerCaseWindowClass;
        std::map<std::string, std::string, std::less<>> byLowerCaseId;
        std::map<std::string, std::vector<std::string>, std::less<>> byProgram;
        FolderTimes folders;
    };

    using Visitor = std::function<void(const std::string& id, const DesktopEntry& entry)>;

    /// The entries that can be started, the first of each id. \return the folders and when they changed.
    FolderTimes visit(const Visitor& visitor) const;
    Index buildIndex() const;
    static bool isCurrent(const Index& index);
    std::optional<std::string> indexed(const WindowIdentity& window) const;
    /// The entry, if it can be started here.
    std::optional<DesktopEntry> startable(const std::filesystem::path& file) const;
    bool isProgram(const std::string& name) const;

    std::vector<std::filesystem::path> applicationFolders_;
    std::vector<std::filesystem::path> searchPath_;
    std::vector<std::string> languages_;
    mutable std::mutex mutex_;
    mutable std::optional<Index> index_;
};

} // namespace glyma::xdg
