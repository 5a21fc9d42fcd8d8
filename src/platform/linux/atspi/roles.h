#pragma once

#include <atspi/atspi.h>

#include <string_view>

namespace glyma::atspi {

/// The port's name for a role.
/// \param isEditable, hasManyLines  what the element's state says. An element whose text can be edited is a
/// text element whatever its role: web pages have editable lists, Firefox calls its address bar a combo box.
std::string_view portRole(AtspiRole role, bool isEditable, bool hasManyLines);

} // namespace glyma::atspi
