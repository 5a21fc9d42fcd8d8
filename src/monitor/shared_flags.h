#pragma once

#include <atomic>

namespace glyma {

/// Three facts about our own windows that the tap must know at once. Any thread.
struct SharedFlags {
    std::atomic<bool> isRecordingShortcut = false;    ///< the shortcut recorder records
    std::atomic<bool> isCharacterInfoShowing = false; ///< the character information panel is open
    std::atomic<bool> isTestFieldFocused = false;     ///< the preferences' test field has the focus
};

} // namespace glyma
