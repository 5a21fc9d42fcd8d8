#pragma once

#include "permissions/secure_input.h"

#include <QString>

namespace glyma::qt {

/// What to tell the user about who holds Secure Input and what to do, as rich text. Names of processes are
/// shown as they are, whatever characters are in them.
QString holderParagraph(const std::optional<Holder>& holder);

} // namespace glyma::qt
