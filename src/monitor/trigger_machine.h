#pragma once

#include "platform/key_event.h"

#include <string>
#include <string_view>

namespace glyma {

/// Where a key finds the monitor.
enum class TriggerState {
    idle,
    pending, ///< the trigger is the last thing typed
    open,    ///< the picker is open, or about to be; the keys tell the query
    polled,  ///< the picker is open and the target's text tells the query
};

/// What a key means here.
enum class KeyMeaning {
    trigger,            ///< types the trigger character and nothing else
    character,          ///< types something visible
    space,              ///< types exactly one space
    deadKey,            ///< types nothing yet
    backspace,          ///< leaves something of the query
    backspaceToTrigger, ///< deletes the last character of the query
    up,
    down,
    choose, ///< Return, keypad Enter
    escape,
    slipped,         ///< one of these four that the application has got all the same
    tab,             ///< types a tab, or accepts what the target proposes
    moveCaret,       ///< Home, End, Left, Right, and the keypad's while it does not type digits
    command,         ///< anything else with Control or Command
    commandDelete,   ///< Backspace with Control or Command
    optionDelete,    ///< deletes a word
    optionCharacter, ///< a menu's key: types nothing
    other,           ///< Page Down, function keys
};

/// What is to be done after a key; somebody else does it.
enum class Effect {
    none,
    keepPending,  ///< say in the log that a dead key has left the trigger pending
    clearPending, ///< say in the log what came after the trigger instead of a character
    rememberSource,
    showPanel,
    queryTyped,
    queryDeleted,
    queryDisturbed, ///< the target's text may become anything
    moveDown,
    moveUp,
    choose,
    dismissPanel,
    showCharacterInfo,
    closeCharacterInfo,
};

struct Transition {
    TriggerState next = TriggerState::idle;
    Effect effect = Effect::none;
    Verdict verdict = Verdict::pass;
    bool operator==(const Transition&) const = default;
};

/// The text of a key as far as it is looked at: its first 8 UTF-16 units.
std::string typedTextOf(const KeyEvent& event);

/// \param event             a key press, neither the shortcut nor the Escape of the character information.
/// \param text              typedTextOf(event).
/// \param trigger           the trigger character.
/// \param isLastCharacter   one more backspace leaves nothing of the query.
KeyMeaning meaningOf(const KeyEvent& event, std::string_view text, std::string_view trigger,
                     bool isLastCharacter);

/// The table of states and keys. A key that is not in it leaves an open picker open and everything else idle.
Transition transition(TriggerState state, KeyMeaning key);

} // namespace glyma
