#pragma once

#include "monitor/trigger_machine.h"
#include "monitor/trigger_permission.h"
#include "monitor/typed_text.h"
#include "platform/front_application.h"
#include "platform/keyboard_tap.h"

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace glyma {

/// Numbers the showings of the picker, from 1, so that work queued for one never touches the next.
using Showing = std::uint64_t;

/// What the tap has to know of settings and of our own windows.
struct TapSettings {
    std::string trigger = ":";
    std::optional<KeyChord> shortcut; ///< none while the recorder records
    std::set<std::string, std::less<>> excludedApplications;
    bool isCharacterInfoShowing = false;
    bool isTestFieldFocused = false;
};

/// What a key led to.
struct Heard {
    Verdict verdict = Verdict::pass;
    Effect effect = Effect::none;
    Showing showing = 0;       ///< the picker that the effect is meant for
    TypedText typed;           ///< after the key, as far as keys tell
    TriggerNumber trigger = 0; ///< the last one typed
    /// What follows a choice waits until the text has been inserted.
    std::shared_ptr<TypingHold> hold;
};

/// The values that the tap thread and the main thread share, behind one lock. Each operation is one short
/// locked step in which the tap is also told what would now be consumed; verdicts follow what it was told, so
/// that the two cannot differ. Any thread.
class MonitorState {
public:
    MonitorState(KeyboardTap& tap, std::string ownIdentifier);

    /// Takes one key press. Tap thread.
    Heard hear(const KeyEvent& event);

    bool isPanelVisible() const;
    bool isPendingTrigger() const;
    bool isKeystrokeMode() const;
    /// The picker that is open, or about to be.
    std::optional<Showing> openShowing() const;
    FrontApplication front() const;

    void setSettings(TapSettings settings);
    void setFront(const FrontApplication& application);
    void setKeystrokeMode(Showing showing, bool value);
    /// What the keys since the trigger of the latest showing have typed.
    TypedText typed() const;
    /// Closes this picker, not one that the user has opened since.
    void close(Showing showing);
    void clearPendingTrigger();

    /// How many keys were heard so far. What was read from the target before the latest of them is no reason
    /// to close anything.
    std::uint64_t keysHeard() const;
    /// Closes whatever is open or pending and leaves the trigger pending, or not, if no key was heard since.
    /// \return whether it did.
    bool leaveUnlessHeard(std::uint64_t keysHeard, bool isPending);
    /// The picker may open where this trigger was typed.
    void allow(TriggerNumber trigger);
    /// It may not: forgets this trigger and closes what it has opened.
    /// \return keys taken from the application since, which it has to get after all.
    std::vector<KeyChord> refuse(TriggerNumber trigger);
    /// The tap runs, or has forgotten everything.
    void setTapRunning(bool isRunning);

private:
    struct Locked;
    std::optional<Heard> hearOwnShortcuts(const KeyEvent& event);
    Heard step(const KeyEvent& event);
    bool isSilentHere() const;
    TriggerState trigger() const;
    void setTrigger(TriggerState state);
    void announce();

    KeyboardTap& tap_;
    const std::string ownIdentifier_;
    mutable std::mutex mutex_;

    bool isPanelVisible_ = false;
    bool isPendingTrigger_ = false;
    std::optional<std::string> cachedFrontBundleID_;
    pid_t cachedFrontPID_ = 0;
    bool isKeystrokeMode_ = false;

    TapSettings settings_;
    TypedText typed_;
    TriggerPermission permission_;
    Showing showing_ = 0;
    bool isTapRunning_ = false;
    std::uint64_t keysHeard_ = 0;
    KeyClaims claims_; ///< what the tap was last told
    /// Its repeats belong to us as well, until another key is pressed.
    std::optional<std::uint16_t> consumedKey_;
};

} // namespace glyma
