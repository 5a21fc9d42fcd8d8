#pragma once

#include <string>
#include <string_view>

namespace glyma {

/// The host of a page's address without a leading "www."; empty when the address is none or has no host.
std::string pageHostOf(std::string_view address);

} // namespace glyma
