#pragma once

#include <optional>
#include <string>

namespace glyma {

/// The program from its start until it is told to end. \param tab  the page of the preferences to show at
/// once; empty: the one shown last. \return the exit status.
int runDesktop(int argc, char** argv, const std::optional<std::string>& tab);

} // namespace glyma
