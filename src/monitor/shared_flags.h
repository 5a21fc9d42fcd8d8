#pragma once

#include "platform/subscription.h"

#include <atomic>

namespace glyma {

/// Three facts about our own windows that the tap must know at once. Read from any thread; written on the
/// main thread, where `changed` is emitted for a value that differs.
struct SharedFlags {
    class Flag {
    public:
        explicit Flag(const Signal<>& changed)
            : changed_(changed) {}
        operator bool() const { return value_; }
        Flag& operator=(bool value) {
            if (value_.exchange(value) != value)
                changed_.emit();
            return *this;
        }

    private:
        const Signal<>& changed_;
        std::atomic<bool> value_ = false;
    };

    Signal<> changed;
    Flag isRecordingShortcut{changed};    ///< the shortcut recorder records
    Flag isCharacterInfoShowing{changed}; ///< the character information panel is open
    Flag isTestFieldFocused{changed};     ///< the preferences' test field has the focus

    SharedFlags() = default;
    SharedFlags(const SharedFlags&) = delete;
    SharedFlags& operator=(const SharedFlags&) = delete;
};

} // namespace glyma
