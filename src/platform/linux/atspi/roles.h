#pragma once

#include <atspi/atspi.h>

#include <string_view>

namespace glyma::atspi {

/// The port's name for a role.
/// \param hasManyLines  what the element's state says, for roles that leave it open.
std::string_view portRole(AtspiRole role, bool hasManyLines);

} // namespace glyma::atspi
