#pragma once

#include "platform/key_event.h"

#include <chrono>
#include <span>

namespace glyma {

/// How long typing is held at the most, whatever has become of who holds it.
inline constexpr std::chrono::milliseconds longestTypingHold{1500};

/// What the user types waits for as long as this lives: no application gets it, and the tap's callback hears
/// it only when it is delivered. Afterwards each key is delivered once, in order, as it was typed, and the
/// callback is asked for its verdict as it is for a live key (repeats of a held key are lost); a hold that
/// the callback begins then keeps the rest waiting, and what is typed meanwhile goes to the end. Ends by
/// itself after longestTypingHold. Main thread, but for being made and passed on.
class TypingHold {
public:
    TypingHold() = default;
    TypingHold(const TypingHold&) = delete;
    TypingHold& operator=(const TypingHold&) = delete;
    virtual ~TypingHold() = default;

    /// Whether typing is still held. Once it is not, the application has got further keys: nothing that was
    /// planned for its text holds any more.
    virtual bool isOn() const = 0;
    /// As KeyInjector::inject, past the hold.
    /// \return false also when the hold is over; nothing is typed then.
    virtual bool inject(std::span<const KeyChord> chords) = 0;
    /// Lets typing go; so does the destruction. More than once is harmless.
    virtual void release() = 0;
};

} // namespace glyma
