#pragma once

#include "catalogue/catalogue_values.h"
#include "platform/geometry.h"

#include <cstddef>
#include <functional>
#include <string>

namespace glyma {

/// What the monitor writes into the picker's state and reads from it. Main thread unless said otherwise.
class PickerModel {
public:
    virtual ~PickerModel() = default;

    virtual void setTrigger(const std::string& trigger) = 0;
    /// Searches, also when the query is the same as before.
    virtual void setQuery(const std::string& query) = 0;
    virtual void setSelectedIndex(std::ptrdiff_t index) = 0;
    virtual void setIsKeystrokeMode(bool value) = 0;
    virtual void setIsPolling(bool value) = 0;
    virtual void setIsAltHeld(bool value) = 0;
    virtual bool isAltHeld() const = 0;
    /// Any thread; a stale count does no harm.
    virtual std::size_t itemCount() const = 0;
    virtual void moveSelection(std::ptrdiff_t delta) = 0;
    virtual void confirmSelection() = 0;
    virtual void setOnSelection(std::function<void(const PickerItem&)> callback) = 0;
    virtual void setOnDismiss(std::function<void()> callback) = 0;
};

/// The picker's window, seen from the monitor. Main thread. Never takes the focus.
class PickerWindow {
public:
    virtual ~PickerWindow() = default;

    virtual void placeAtCaret(const Rect& caret) = 0;
    virtual void orderFront() = 0;
    virtual void showCaretOverlay(const Rect& caret) = 0;
    virtual Rect frame() const = 0;
    virtual void setFrameOrigin(Point origin) = 0;
    /// Hides the window, drops the model's callbacks and resets the model.
    virtual void hide() = 0;
};

} // namespace glyma
