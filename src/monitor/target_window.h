#pragma once

#include "monitor/picker_port.h"
#include "monitor/target_reader.h"
#include "platform/accessibility.h"
#include "platform/geometry.h"

#include <memory>
#include <optional>

namespace glyma {

/// Where the window that has the focus stands; absent when it does not tell. Any thread.
std::optional<Point> focusedWindowOrigin(Accessibility& accessibility);

/// Keeps the open picker attached to the target's window while that is dragged. Main thread.
class TargetWindow {
public:
    TargetWindow(Accessibility& accessibility, TargetReader& reader, PickerWindow& picker)
        : accessibility_(accessibility)
        , reader_(reader)
        , picker_(picker) {}

    /// The picker has just been shown: where both are now belongs together.
    void remember();
    /// The picker is closed.
    void forget();
    /// Moves the picker by as much as the window has moved.
    /// \param commit  the drag is over; the next one starts from here.
    void followTargetWindow(bool commit);

private:
    void read();
    void moveTo(Point windowOrigin);

    Accessibility& accessibility_;
    TargetReader& reader_;
    PickerWindow& picker_;
    std::optional<Point> panelOriginAtShow_;
    std::optional<Point> windowOriginAtShow_;
    bool isReading_ = false;
    bool readsAgain_ = false; ///< asked again while reading
    bool commits_ = false;
    /// Replaced when the picker closes: what was asked before is then of no use.
    std::shared_ptr<int> shown_;
};

} // namespace glyma
