#pragma once

#include "platform/key_event.h"
#include "platform/typing_hold.h"

#include <expected>
#include <functional>
#include <memory>
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
    /// Holds what the user types from now on; called from the callback, that is everything behind the key it
    /// was called for. In force when the call returns. Null when it cannot be had (somebody else has the
    /// keyboard): typing goes on as ever. Any thread.
    virtual std::shared_ptr<TypingHold> holdTyping() = 0;
};

} // namespace glyma
