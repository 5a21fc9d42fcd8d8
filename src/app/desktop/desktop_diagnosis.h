#pragma once

#include "app/diagnosis.h"

#include <vector>

namespace glyma {

/// What the desktop offers: the X server and its extensions, accessibility, the session bus, the tray, a
/// compositor. Needs no display and changes nothing. Needs the application object (one without windows will
/// do).
std::vector<Diagnosis> diagnoseDesktop();

} // namespace glyma
