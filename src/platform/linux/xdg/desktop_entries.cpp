#include "platform/linux/xdg/desktop_entries.h"

#include <algorithm>
#include <set>
#include <sstream>
#include <unistd.h>

namespace glyma::xdg {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view suffix = ".desktop";

std::string lowerCase(std::string_view text) {
    std::string result(text);
    for (char& letter : result)
        if (letter >= 'A' && letter <= 'Z')
            letter = static_cast<char>(letter - 'A' + 'a');
    return result;
}

/// The file of an id below a folder: each dash of the id may stand for a sub-folder.
std::optional<fs::path> fileOf(const fs::path& folder, std::string_view id) {
    std::error_code error;
    auto file = folder / (std::string(id) + std::string(suffix));
    if (fs::is_regular_file(file, error))
        return file;
    for (auto dash = id.find('-'); dash != std::string_view::npos; dash = id.find('-', dash + 1)) {
        const auto below = folder / id.substr(0, dash);
        if (dash > 0 && fs::is_directory(below, error))
            if (auto found = fileOf(below, id.substr(dash + 1)))
                return found;
    }
    return std::nullopt;
}

std::string idOf(const fs::path& folder, const fs::path& file) {
    auto id = file.lexically_relative(folder).string();
    std::ranges::replace(id, '/', '-');
    id.resize(id.size() - suffix.size());
    return id;
}

std::vector<fs::path> splitPath(const std::string& path) {
    std::vector<fs::path> folders;
    std::istringstream stream(path);
    for (std::string folder; std::getline(stream, folder, ':');)
        if (!folder.empty())
            folders.emplace_back(folder);
    return folders;
}

std::string withoutSuffix(const std::string& id) {
    return id.ends_with(suffix) ? id.substr(0, id.size() - suffix.size()) : id;
}

InstalledApplication application(const std::string& id, const DesktopEntry& entry) {
    return {.identifier = id, .name = entry.name.empty() ? id : entry.name, .icon = entry.icon};
}

template<typename Map>
std::optional<std::string> valueOf(const Map& map, const std::string& key) {
    const auto place = map.find(key);
    return !key.empty() && place != map.end() ? std::optional(place->second) : std::nullopt;
}

} // namespace

DesktopEntries::DesktopEntries(const std::vector<fs::path>& dataFolders, const std::string& searchPath,
                               std::string_view locale)
    : searchPath_(splitPath(searchPath))
    , languages_(languagesOf(locale)) {
    for (const auto& folder : dataFolders)
        applicationFolders_.push_back(folder / "applications");
}

bool DesktopEntries::isInstalled(std::string_view identifier) const {
    return find(identifier).has_value();
}

std::optional<InstalledApplication> DesktopEntries::find(std::string_view identifier) const {
    if (identifier.empty() || identifier.find('/') != std::string_view::npos)
        return std::nullopt;
    for (const auto& folder : applicationFolders_)
        if (const auto file = fileOf(folder, identifier)) {
            const auto entry = startable(*file);
            return entry ? std::optional(application(std::string(identifier), *entry)) : std::nullopt;
        }
    return std::nullopt;
}

std::vector<InstalledApplication> DesktopEntries::withWindows() const {
    std::vector<InstalledApplication> applications;
    visit([&](const std::string& id, const DesktopEntry& entry) {
        // What runs in a terminal has the terminal's windows.
        if (entry.isShown && !entry.needsTerminal)
            applications.push_back(application(id, entry));
    });
    return applications;
}

std::optional<DesktopEntry> DesktopEntries::startable(const fs::path& file) const {
    auto entry = readDesktopEntry(file, languages_);
    const bool canStart = entry && entry->type == "Application" && !entry->isHidden &&
                          (entry->tryExec.empty() || isProgram(entry->tryExec));
    return canStart ? entry : std::nullopt;
}

bool DesktopEntries::isProgram(const std::string& name) const {
    if (name.starts_with('/'))
        return ::access(name.c_str(), X_OK) == 0;
    return std::ranges::any_of(
        searchPath_, [&](const fs::path& folder) { return ::access((folder / name).c_str(), X_OK) == 0; });
}

std::optional<std::string> DesktopEntries::identifierFor(const WindowIdentity& window) const {
    if (const auto id = withoutSuffix(window.applicationId); isInstalled(id))
        return id;
    if (auto id = indexed(window))
        return id;
    const auto& name = window.wmClassName.empty() ? window.wmClassInstance : window.wmClassName;
    return name.empty() ? std::nullopt : std::optional(lowerCase(name));
}

std::optional<std::string> DesktopEntries::indexed(const WindowIdentity& window) const {
    const std::lock_guard lock(mutex_);
    if (!index_ || !isCurrent(*index_))
        index_ = buildIndex();
    // Web applications of a browser differ in the instance only, so it comes first; but the user may choose
    // it (xterm -name), so beyond exact equality the name counts more.
    if (auto id = valueOf(index_->byWindowClass, window.wmClassInstance))
        return id;
    if (auto id = valueOf(index_->byWindowClass, window.wmClassName))
        return id;
    if (auto id = valueOf(index_->byLowerCaseWindowClass, lowerCase(window.wmClassName)))
        return id;
    auto name = lowerCase(window.wmClassName);
    if (auto id = valueOf(index_->byLowerCaseId, name))
        return id;
    std::ranges::replace(name, ' ', '-');
    if (auto id = valueOf(index_->byLowerCaseId, name))
        return id;
    return valueOf(index_->byLowerCaseId, lowerCase(window.wmClassInstance));
}

std::optional<InstalledApplication> DesktopEntries::findByProgram(std::string_view program) const {
    std::vector<std::string> identifiers;
    {
        const std::lock_guard lock(mutex_);
        if (!index_ || !isCurrent(*index_))
            index_ = buildIndex();
        if (const auto place = index_->byProgram.find(program); place != index_->byProgram.end())
            identifiers = place->second;
    }
    // A browser's web applications, and helpers that menus show, start the same program.
    if (identifiers.size() > 1)
        std::erase_if(identifiers, [&](const std::string& id) { return !id.ends_with(program); });
    return identifiers.size() == 1 ? find(identifiers.front()) : std::nullopt;
}

bool DesktopEntries::isCurrent(const Index& index) {
    return std::ranges::all_of(index.folders, [](const auto& folder) {
        std::error_code error;
        return fs::last_write_time(folder.first, error) == folder.second;
    });
}

DesktopEntries::FolderTimes DesktopEntries::visit(const Visitor& visitor) const {
    FolderTimes folders;
    std::set<std::string> seen;
    for (const auto& folder : applicationFolders_) {
        std::error_code error;
        folders.emplace_back(folder, fs::last_write_time(folder, error));
        std::vector<fs::path> files;
        constexpr auto options = fs::directory_options::skip_permission_denied;
        for (fs::recursive_directory_iterator place(folder, options, error), end; !error && place != end;
             place.increment(error)) {
            std::error_code ignored;
            if (place->is_directory(ignored))
                folders.emplace_back(place->path(), fs::last_write_time(place->path(), ignored));
            else if (place->path().extension() == suffix)
                files.push_back(place->path());
        }
        std::ranges::sort(files);
        for (const auto& file : files) {
            const auto id = idOf(folder, file);
            if (!seen.insert(id).second)
                continue;
            if (const auto entry = startable(file))
                visitor(id, *entry);
        }
    }
    return folders;
}

DesktopEntries::Index DesktopEntries::buildIndex() const {
    Index index;
    // Of several entries with one window class, one that menus show comes before one that they do not.
    std::map<std::string, std::string, std::less<>> hiddenByWindowClass;
    index.folders = visit([&](const std::string& id, const DesktopEntry& entry) {
        index.byLowerCaseId.emplace(lowerCase(id), id);
        // A program that runs in a terminal does not have the terminal's keyboard.
        if (entry.isShown && !entry.needsTerminal)
            index.byProgram[programOf(entry.exec)].push_back(id);
        if (!entry.startupWindowClass.empty())
            (entry.isShown ? index.byWindowClass : hiddenByWindowClass).emplace(entry.startupWindowClass, id);
    });
    index.byWindowClass.merge(hiddenByWindowClass);
    for (const auto& [windowClass, id] : index.byWindowClass)
        index.byLowerCaseWindowClass.emplace(lowerCase(windowClass), id);
    return index;
}

} // namespace glyma::xdg
