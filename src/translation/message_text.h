#pragma once

#include "platform/message.h"

#include <QString>

namespace glyma {

/// The message in the user's language, as far as there is a translation, else in English. Main thread.
QString textOf(const Message& message);
/// The same in UTF-8, for the core.
std::string translated(const Message& message);

} // namespace glyma
