#pragma once

#include "platform/key_event.h"

#include <span>

namespace glyma {

/// Types for the user.
class KeyInjector {
public:
    virtual ~KeyInjector() = default;

    /// Presses and releases each chord, back to back, into the window that has the focus, with exactly the
    /// chord's modifiers: what the user holds is lifted first and restored afterwards, and a key that the tap
    /// itself has consumed and the user still holds does not get in the way.
    /// \return false when a key could not be posted; the others are posted all the same. Main thread.
    virtual bool inject(std::span<const KeyChord> chords) = 0;
};

} // namespace glyma
