#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace glyma::unicode {

/// A host name as browsers put it into addresses: letters beyond ASCII encoded (UTS #46, "bücher.de" is
/// "xn--bcher-kva.de"), an ASCII name as it is. Absent when it is no host name. Any thread.
std::optional<std::string> asciiHostName(std::string_view name);

} // namespace glyma::unicode
