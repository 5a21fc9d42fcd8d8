#pragma once

#include "platform/key_event.h"

#include <cstdint>
#include <vector>

namespace glyma {

/// Numbers the triggers typed, from 1.
using TriggerNumber = std::uint64_t;

/// Whether the picker may open where the trigger was typed takes the main thread some time to find out, and
/// the user types on meanwhile. Until it is known the keys work as if the answer were yes; those that the
/// picker took from the application are kept, to be given back when it is no. Not synchronised.
class TriggerPermission {
public:
    /// A trigger has been typed.
    void ask() { ++asked_; }
    TriggerNumber asked() const { return asked_; }
    /// A key has been taken from the application on account of the last trigger.
    void take(const KeyChord& key);

    /// The answer is yes.
    void allow(TriggerNumber trigger);
    /// The answer is no.
    /// \return the keys to give back, in the order they were typed.
    std::vector<KeyChord> refuse(TriggerNumber trigger);

private:
    struct Taken {
        TriggerNumber trigger;
        KeyChord key;
    };

    TriggerNumber asked_ = 0;
    TriggerNumber answered_ = 0;
    std::vector<Taken> taken_;
};

} // namespace glyma
