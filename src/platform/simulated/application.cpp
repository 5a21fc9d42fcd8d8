#include "platform/simulated/application.h"

#include "platform/simulated/keyboard_layout.h"
#include "unicode/text.h"

#include <algorithm>
#include <utility>

namespace glyma::simulated {

namespace {

constexpr auto chordFlags = modifier::controlOptionOrCommand | modifier::shift;

bool typesText(const KeyEvent& event) {
    const auto first = unicode::firstScalar(event.text);
    return first >= U' ' && first != 0x7F && (first < 0xF700 || first > 0xF8FF);
}

std::string nameOf(std::uint16_t keyCode) {
    switch (keyCode) {
    case keycode::returnKey:
        return "Return";
    case keycode::keypadEnter:
        return "Enter";
    case keycode::backspace:
        return "BackSpace";
    case keycode::escape:
        return "Escape";
    case keycode::up:
        return "Up";
    case keycode::down:
        return "Down";
    case keycode::left:
        return "Left";
    case keycode::right:
        return "Right";
    case keycode::home:
        return "Home";
    case keycode::end:
        return "End";
    case keycode::insert:
        return "Insert";
    case keycode::v:
        return "V";
    case key::tab:
        return "Tab";
    case key::pageDown:
        return "PageDown";
    case key::forwardDelete:
        return "Delete";
    default:
        return std::to_string(keyCode);
    }
}

std::string readable(const KeyEvent& event) {
    const bool isChord = event.flags & modifier::controlOptionOrCommand;
    if (!isChord && typesText(event))
        return event.text;
    std::string name = "<";
    for (const auto& [flag, word] :
         {std::pair(modifier::control, "Control+"), std::pair(modifier::option, "Alt+"),
          std::pair(modifier::command, "Super+"), std::pair(modifier::shift, "Shift+")})
        if (event.flags & flag)
            name += word;
    return name + nameOf(event.keyCode) + ">";
}

std::string readable(const std::vector<ReceivedKey>& keys, bool isInjected) {
    std::string text;
    for (const auto& key : keys)
        if (key.isInjected == isInjected)
            text += readable(key.event);
    return text;
}

} // namespace

Application::Application(FrontApplication identity, Manner manner, VirtualClock& clock,
                         SimulatedClipboard& clipboard, SimulatedClipboard& primarySelection)
    : identity_(std::move(identity))
    , manner_(std::move(manner))
    , clock_(clock)
    , clipboard_(clipboard)
    , primarySelection_(primarySelection) {
    fields_.push_back(std::make_unique<TextField>());
}

std::string Application::text() const {
    const std::lock_guard lock(mutex_);
    return focused().text();
}

std::string Application::textWithCaret() const {
    const std::lock_guard lock(mutex_);
    return focused().textWithCaret();
}

void Application::setText(const std::string& text) {
    const std::lock_guard lock(mutex_);
    focused().setText(text);
}

void Application::setSelection(TextRange range) {
    const std::lock_guard lock(mutex_);
    focused().setSelection(range);
}

Rect Application::caret() const {
    const std::lock_guard lock(mutex_);
    return focused().bounds({focused().selection().location, 0});
}

std::size_t Application::addField(const Rect& frame) {
    const std::lock_guard lock(mutex_);
    fields_.push_back(std::make_unique<TextField>(frame));
    return fields_.size() - 1;
}

void Application::focusField(std::size_t index) {
    const std::lock_guard lock(mutex_);
    focusedField_ = index;
}

std::size_t Application::focusedField() const {
    const std::lock_guard lock(mutex_);
    return focusedField_;
}

void Application::moveFocusedField(const Rect& frame) {
    const std::lock_guard lock(mutex_);
    focused().setFrame(frame);
}

Point Application::windowOrigin() const {
    const std::lock_guard lock(mutex_);
    return windowOrigin_;
}

void Application::moveWindow(Point by) {
    const std::lock_guard lock(mutex_);
    windowOrigin_ = {windowOrigin_.x + by.x, windowOrigin_.y + by.y};
    for (const auto& field : fields_) {
        const auto& frame = field->frame();
        field->setFrame({frame.x + by.x, frame.y + by.y, frame.width, frame.height});
    }
}

bool Application::isHung() const {
    const std::lock_guard lock(mutex_);
    return isHung_;
}

void Application::setHung(bool hung) {
    const std::lock_guard lock(mutex_);
    isHung_ = hung;
    while (!isHung_ && !waitingKeys_.empty()) {
        const auto event = waitingKeys_.front();
        waitingKeys_.pop_front();
        actOnKey(event);
    }
}

void Application::receive(const ReceivedKey& key) {
    const std::lock_guard lock(mutex_);
    received_.push_back(key);
    if (manner_.keyLag.count() == 0)
        apply(key.event);
    else
        clock_.schedule(manner_.keyLag, [this, event = key.event] { apply(event); });
}

void Application::apply(const KeyEvent& event) {
    const std::lock_guard lock(mutex_);
    if (isHung_)
        waitingKeys_.push_back(event);
    else
        actOnKey(event);
}

void Application::pasteLater(SimulatedClipboard& from) {
    clock_.schedule(manner_.pasteLag, [this, &from] {
        const std::lock_guard lock(mutex_);
        remember();
        focused().insert(from.take());
    });
}

bool Application::actOnChord(const KeyEvent& event) {
    const KeyChord chord{event.keyCode, event.flags & chordFlags};
    const auto isOneOf = [&chord](const std::vector<KeyChord>& chords) {
        return std::ranges::find(chords, chord) != chords.end();
    };
    if (isOneOf(manner_.pasteChords)) {
        pasteLater(clipboard_);
        return true;
    }
    if (isOneOf(manner_.primaryPasteChords)) {
        pasteLater(primarySelection_);
        return true;
    }
    if (chord == KeyChord{key::z, modifier::control} && !undo_.empty()) {
        focused().setText(undo_.back());
        undo_.pop_back();
        return true;
    }
    if (!(event.flags & modifier::controlOptionOrCommand))
        return false;
    if (manner_.typesControlCharacters && (event.flags & modifier::control))
        focused().insert("^" + nameOf(event.keyCode));
    return true;
}

void Application::typeText(const std::string& text) {
    remember();
    auto& field = focused();
    field.insert(text);
    const auto caret = field.selection().location;
    const auto typed = field.substring({0, caret});
    for (const auto& [start, completion] : manner_.completions)
        if (typed.ends_with(start)) {
            field.insert(completion);
            field.setSelection({caret, static_cast<std::ptrdiff_t>(unicode::utf16Length(completion))});
            return;
        }
}

void Application::actOnKey(const KeyEvent& event) {
    if (actOnChord(event))
        return;
    auto& field = focused();
    switch (event.keyCode) {
    case keycode::backspace:
        return field.deleteBackwards(manner_.deletesWholeCharacters);
    case key::forwardDelete:
        return field.deleteForwards();
    case keycode::left:
        return field.moveCaret(-1);
    case keycode::right:
        return field.moveCaret(1);
    case keycode::home:
        return field.moveToLineStart();
    case keycode::end:
        return field.moveToLineEnd();
    case keycode::returnKey:
    case keycode::keypadEnter:
        return manner_.isSingleLine ? void() : field.insert("\n");
    case key::tab:
        return field.insert("\t");
    default:
        if (typesText(event))
            typeText(event.text);
    }
}

std::vector<ReceivedKey> Application::received() const {
    const std::lock_guard lock(mutex_);
    return received_;
}

std::string Application::keysFromUser() const {
    return readable(received(), false);
}

std::string Application::keysInjected() const {
    return readable(received(), true);
}

void Application::forgetKeys() {
    const std::lock_guard lock(mutex_);
    received_.clear();
}

} // namespace glyma::simulated
