#pragma once

#include <expected>
#include <string>

namespace glyma {

/// Loads a module of the program, lib/glyma/modules/libglyma-<name>.so beside its folder, and finds a
/// function in it. The module stays loaded: Qt cannot be unloaded, and what a module has made needs its code.
/// \return the address, never null, or why there is none.
std::expected<void*, std::string> loadModule(const std::string& name, const char* entryPoint);

} // namespace glyma
