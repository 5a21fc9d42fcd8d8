#include "app/module_loader.h"

#include "platform/linux/xdg/folders.h"

#include <fmt/format.h>

#include <dlfcn.h>

namespace glyma {

std::expected<void*, std::string> loadModule(const std::string& name, const char* entryPoint) {
    const auto file =
        (xdg::executablePath().parent_path() / "../lib/glyma/modules" / ("libglyma-" + name + ".so"))
            .lexically_normal();
    void* const module = ::dlopen(file.c_str(), RTLD_LAZY | RTLD_LOCAL);
    if (!module)
        return std::unexpected(fmt::format("the {} part cannot be loaded: {}", name, ::dlerror()));
    void* const function = ::dlsym(module, entryPoint);
    if (!function)
        return std::unexpected(fmt::format("{} is not the {} part of this program", file.string(), name));
    return function;
}

} // namespace glyma
