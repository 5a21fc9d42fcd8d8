#pragma once

#include "platform/key_event.h"

#include <expected>
#include <functional>
#include <string>

namespace glyma {

/// Sees every key of the session before, or at the same time as, the application it is meant for.
class KeyboardTap {
public:
    /// Called on the tap's own thread. Must be quick and must not wait for the main thread.
    using Callback = std::function<Verdict(const KeyEvent&)>;

    virtual ~KeyboardTap() = default;

    /// Starts the tap thread. The error says what is missing and what the user can do. Main thread.
    virtual std::expected<void, std::string> start(Callback callback) = 0;
    /// Ends the tap thread and gives back everything claimed; the callback does not run after it. Main
    /// thread.
    virtual void stop() = 0;
    /// Makes a tap that reported KeyEvent::Type::tapDisabledByTimeout work again. Tap thread.
    virtual void enable() = 0;
    /// Announces what the callback would consume from now on. In force when the call returns. Any thread.
    virtual void claim(const KeyClaims& claims) = 0;
};

} // namespace glyma
