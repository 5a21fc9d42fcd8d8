#pragma once

#include "platform/geometry.h"

#include <QTimer>

#include <array>
#include <memory>

class QWidget;

namespace glyma::qt {

/// Shows on the screen, for diagnosis, where a caret was found: the caret in red, a blue line at its top and
/// a green one where its bottom is taken to be. Gone after three seconds. Main thread.
class CaretOverlay {
public:
    CaretOverlay();
    ~CaretOverlay();

    /// \param caret  device pixels.
    void show(const Rect& caret);

private:
    void clear();

    std::array<std::unique_ptr<QWidget>, 3> windows_;
    QTimer expiry_;
};

} // namespace glyma::qt
