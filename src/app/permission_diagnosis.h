#pragma once

#include "app/diagnosis.h"
#include "permissions/secure_input.h"
#include "platform/permission.h"

#include <optional>
#include <vector>

namespace glyma {

/// The permissions as `glyma doctor` tells them. \param secureInput  none: only the running program knows.
std::vector<Diagnosis> diagnosePermissions(const Permission& inputMonitoring, const Permission& accessibility,
                                           const std::optional<SecureInput>& secureInput);

} // namespace glyma
