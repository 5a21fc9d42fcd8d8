#pragma once

#include "app/command_line.h"
#include "app/foundation.h"

#include <string>

namespace glyma {

/// What the command is about: its argument, else standard input. \return the text, or the exit status after a
/// complaint.
std::expected<std::string, int> textOf(const InfoCommand& command);

/// Prints what is known about the characters of the text. Builds the catalogue first when there is none.
/// \return the exit status.
int runInfo(const InfoCommand& command, const std::string& text, Foundation& foundation);

} // namespace glyma
