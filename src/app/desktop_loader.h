#pragma once

#include "app/desktop_request.h"

#include <expected>
#include <string>

namespace glyma {

/// Loads the desktop module that lies beside the program and hands the request over. The module stays loaded.
/// \return its exit status, or why there is no module to ask and what to do.
std::expected<int, std::string> callDesktop(const GlymaDesktopRequest& request);

} // namespace glyma
