#pragma once

#include "platform/subscription.h"

#include <functional>

namespace glyma {

/// What the user does with the buttons of the pointer.
enum class MouseEvent {
    leftDown,
    leftUp,
    leftDragged,
    otherDown, ///< any other button
};

/// Sees the pointer's buttons while somebody wants to know, and costs nothing otherwise. Main thread.
class MouseMonitor {
public:
    virtual ~MouseMonitor() = default;

    /// \param callback  called on the main thread for what happens in windows of other programs; one of our
    ///                  own that the button went down in keeps its whole drag to itself.
    [[nodiscard]] virtual Subscription observe(std::function<void(MouseEvent)> callback) = 0;
};

} // namespace glyma
