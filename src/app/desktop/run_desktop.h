#pragma once

namespace glyma {

/// The program from its start until it is told to end. \return the exit status.
int runDesktop(int argc, char** argv);

} // namespace glyma
