#pragma once

#include <filesystem>
#include <string>

namespace glyma::qt {

/// On X11 what a program has put on a clipboard goes with it, here what the user had copied elsewhere and the
/// program has given back. Where no clipboard manager takes it over, a process of its own keeps it, until
/// something else is copied. Waits until it does, at most 0.2 s. At the end of the program; needs the
/// application object.
/// \param program   started with the argument, and with what keepClipboards() reads on its standard input.
void leaveClipboards(const std::filesystem::path& program, const std::string& argument);

/// That process. Needs a QGuiApplication. \return its exit status.
int keepClipboards();

} // namespace glyma::qt
