#pragma once

#include "platform/geometry.h"

class QScreen;

namespace glyma::qt {

/// The screen that a point in device pixels lies on, else the primary one; null when there is no screen.
QScreen* screenAt(Point device);

} // namespace glyma::qt
