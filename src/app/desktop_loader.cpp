#include "app/desktop_loader.h"

#include "platform/linux/xdg/folders.h"

#include <fmt/format.h>

#include <dlfcn.h>

namespace glyma {

std::expected<int, std::string> callDesktop(const GlymaDesktopRequest& request) {
    const auto file = xdg::executablePath().parent_path() / "../lib/glyma/libglyma-desktop.so";
    // Qt cannot be unloaded, so the handle is never closed.
    void* module = ::dlopen(file.lexically_normal().c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!module)
        return std::unexpected(fmt::format("the desktop part cannot be loaded: {}", ::dlerror()));
    const auto entryPoint = reinterpret_cast<GlymaDesktopMain>(::dlsym(module, desktopEntryPoint));
    if (!entryPoint)
        return std::unexpected(
            fmt::format("{} is not the desktop part of this program", file.lexically_normal().string()));
    return entryPoint(&request);
}

} // namespace glyma
