#pragma once

#include "platform/subscription.h"

#include <functional>
#include <optional>
#include <sys/types.h>

namespace glyma {

/// A process has all keys sent to itself.
struct KeyboardGrab {
    /// 0 when unknown.
    pid_t process = 0;
    /// It is a menu or a drop-down list, which takes the keyboard for as long as it is open.
    bool isMenu = false;
    bool operator==(const KeyboardGrab&) const = default;
};

/// Knows who has taken the keyboard for himself. Main thread but where said otherwise.
class KeyboardGrabWatch {
public:
    virtual ~KeyboardGrabWatch() = default;

    /// Any thread; never waits. A grab made before the program was started has no process.
    virtual std::optional<KeyboardGrab> current() const = 0;
    /// Called after `current()` has changed.
    [[nodiscard]] virtual Subscription observe(std::function<void()> callback) = 0;
    /// Looks again, over a connection that is open already.
    virtual void check() = 0;
};

} // namespace glyma
