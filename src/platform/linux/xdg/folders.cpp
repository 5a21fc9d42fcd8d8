#include "platform/linux/xdg/folders.h"

#include <cstdlib>
#include <pwd.h>
#include <sstream>
#include <string_view>
#include <unistd.h>

namespace glyma::xdg {

namespace fs = std::filesystem;

namespace {

fs::path homeFolder(const Environment& environment) {
    if (const auto home = environment("HOME"); home && fs::path(*home).is_absolute())
        return *home;
    const auto* user = getpwuid(getuid());
    return user && user->pw_dir ? fs::path(user->pw_dir) : fs::path("/");
}

fs::path baseFolder(const Environment& environment, const char* variable, const fs::path& otherwise) {
    const auto value = environment(variable);
    return value && fs::path(*value).is_absolute() ? fs::path(*value) : otherwise;
}

fs::path overridden(const Environment& environment, const char* variable, const fs::path& otherwise) {
    const auto value = environment(variable);
    if (!value || value->empty())
        return otherwise;
    std::error_code error;
    const auto absolute = fs::absolute(*value, error);
    return error ? fs::path(*value) : absolute;
}

std::vector<fs::path> systemDataFolders(const Environment& environment, const fs::path& own) {
    auto list = environment("XDG_DATA_DIRS").value_or("");
    if (list.empty())
        list = "/usr/local/share:/usr/share";
    std::vector<fs::path> folders{own};
    std::istringstream stream(list);
    for (std::string folder; std::getline(stream, folder, ':');)
        if (fs::path(folder).is_absolute())
            folders.emplace_back(folder);
    return folders;
}

fs::path resourceFolder(const fs::path& executable) {
    auto installed = (executable.parent_path() / "../share/glyma").lexically_normal();
#ifdef GLYMA_DEVELOPMENT_RESOURCES
    std::error_code error;
    if (!fs::is_directory(installed, error))
        return GLYMA_DEVELOPMENT_RESOURCES;
#endif
    return installed;
}

} // namespace

Environment processEnvironment() {
    return [](const char* name) -> std::optional<std::string> {
        const char* value = std::getenv(name);
        return value ? std::optional<std::string>(value) : std::nullopt;
    };
}

Folders findFolders(const Environment& environment, const fs::path& executable) {
    const auto home = homeFolder(environment);
    const auto config = baseFolder(environment, "XDG_CONFIG_HOME", home / ".config");
    const auto data = baseFolder(environment, "XDG_DATA_HOME", home / ".local/share");
    return {
        .config = overridden(environment, "GLYMA_CONFIG_DIR", config / "glyma"),
        .data = overridden(environment, "GLYMA_DATA_DIR", data / "Glyma"),
        .resources = overridden(environment, "GLYMA_RESOURCE_DIR", resourceFolder(executable)),
        .autostart = config / "autostart",
        .systemData = systemDataFolders(environment, data),
    };
}

fs::path executablePath() {
    std::error_code error;
    return fs::read_symlink("/proc/self/exe", error);
}

} // namespace glyma::xdg
