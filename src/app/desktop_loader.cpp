#include "app/desktop_loader.h"

#include "app/module_loader.h"

namespace glyma {

std::expected<int, std::string> callDesktop(const GlymaDesktopRequest& request) {
    const auto entryPoint = loadModule("desktop", desktopEntryPoint);
    if (!entryPoint)
        return std::unexpected(entryPoint.error());
    return reinterpret_cast<GlymaDesktopMain>(*entryPoint)(&request);
}

} // namespace glyma
