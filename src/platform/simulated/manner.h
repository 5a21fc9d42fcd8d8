#pragma once

#include "platform/key_event.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace glyma::simulated {

/// What an application makes of a request to change its text.
enum class Response {
    works,
    ignores,  ///< reports success and does nothing
    refuses,  ///< reports an error
    lacks,    ///< has no such attribute, or cannot have it set
    replaces, ///< of a replaced selection: does it, and selects what it put in
};

inline constexpr KeyChord controlV{keycode::v, modifier::control};
inline constexpr KeyChord controlShiftV{keycode::v, modifier::control | modifier::shift};
inline constexpr KeyChord shiftInsert{keycode::insert, modifier::shift};

/// How an application behaves. The default is the best behaved.
struct Manner {
    // Accessibility
    bool isFocusReported = true;     ///< tells the desktop which element has the focus
    bool reportsSelection = true;    ///< AXSelectedTextRange can be read
    bool reportsSelectedText = true; ///< AXSelectedText is what is selected, not always ""
    bool reportsBounds = true;       ///< AXBoundsForRange, AXPosition and AXSize
    Response setSelection = Response::works;
    Response setSelectedText = Response::works;
    Response setValue = Response::works;
    /// Answers for text markers; has a rectangle for a range of them and none for a range of offsets.
    bool answersMarkers = false;
    /// Of a text field: what it does not answer in spite of all that.
    std::set<std::string, std::less<>> lackingAttributes;
    std::chrono::milliseconds selectionLag{0}; ///< a selection that was set shows this much later
    std::chrono::milliseconds answerTime{0};   ///< of each call
    std::string role = "AXTextArea";
    std::string webAddress; ///< not empty: the fields are inside a web area of this address
    std::set<std::size_t> fieldsOutsideThePage; ///< an address bar, a panel

    // Keys
    std::chrono::milliseconds keyLag{0};    ///< a key takes effect this much later
    std::chrono::milliseconds pasteLag{10}; ///< the clipboard is read this much after the chord
    std::vector<KeyChord> pasteChords{controlV, shiftInsert};
    std::vector<KeyChord> primaryPasteChords; ///< these paste the primary selection
    bool typesControlCharacters = false;      ///< a terminal: Control and a letter types ^ and the letter
    bool isSingleLine = false;
    bool deletesWholeCharacters = true;             ///< a backspace removes a grapheme cluster, not a scalar
    std::map<std::string, std::string> completions; ///< after this text, that text appears, selected
};

/// Reports everything, changes everything.
Manner wellBehaved();
/// Tells accessibility nothing at all.
Manner silent();
/// Silent; pastes the clipboard with Ctrl+Shift+V and the primary selection with Shift+Insert.
Manner terminal();
/// Selects when asked to, then ignores the new text and says it took it.
Manner ignoresReplacement();
/// Says that it selects and does not.
Manner ignoresSelection();
/// Only the whole value can be set.
Manner valueOnly();
/// Everything works, `answerTime` later.
Manner slow(std::chrono::milliseconds answerTime);
/// Keys take effect later than anybody hears of them.
Manner lateKeys(std::chrono::milliseconds keyLag);

} // namespace glyma::simulated
