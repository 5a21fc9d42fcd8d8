#pragma once

#include <nlohmann/json_fwd.hpp>

#include <functional>
#include <map>
#include <string>
#include <string_view>

namespace glyma {

/// Applications by identifier: whether their web sites can be excluded.
using Browsers = std::map<std::string, bool, std::less<>>;

/// The user's table: an object of application identifier to true or false. What is neither is left out.
Browsers parseBrowsers(const nlohmann::json& value);

/// \param identifier  desktop-entry id or lower-cased window class.
bool isKnownBrowser(std::string_view identifier);

} // namespace glyma
