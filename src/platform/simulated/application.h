#pragma once

#include "platform/front_application.h"
#include "platform/key_event.h"
#include "platform/simulated/clipboard.h"
#include "platform/simulated/manner.h"
#include "platform/simulated/text_field.h"
#include "platform/simulated/virtual_clock.h"

#include <cstddef>
#include <deque>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace glyma::simulated {

/// A key press that reached an application.
struct ReceivedKey {
    KeyEvent event;
    bool isInjected = false;
};

/// A program of somebody else, with text fields of which one has the focus. Keeps every key that reached it.
/// Any thread, but for the construction.
class Application {
public:
    Application(FrontApplication identity, Manner manner, VirtualClock& clock, SimulatedClipboard& clipboard,
                SimulatedClipboard& primarySelection);

    const FrontApplication& identity() const { return identity_; }
    const Manner& manner() const { return manner_; }

    // What stands in the focused field
    std::string text() const;
    /// "|" at the caret, or around the selection.
    std::string textWithCaret() const;
    void setText(const std::string& text);
    void setSelection(TextRange range);
    Rect caret() const;

    // Fields
    /// \return its index; the first field is there from the start and has the focus.
    std::size_t addField(const Rect& frame);
    void focusField(std::size_t index);
    std::size_t focusedField() const;
    void moveFocusedField(const Rect& frame);
    Point windowOrigin() const;
    /// Its fields move with it.
    void moveWindow(Point by);

    /// Stops answering and acting on keys, until told otherwise; keys that came meanwhile are then acted
    /// upon.
    void setHung(bool hung);
    bool isHung() const;

    // Keys
    void receive(const ReceivedKey& key);
    std::vector<ReceivedKey> received() const;
    /// Those the user typed, readable: characters as they are, others as "<Return>" or "<Control+9>".
    std::string keysFromUser() const;
    std::string keysInjected() const;
    void forgetKeys();

    /// For the accessibility of this desktop: works on a field while nothing else does.
    template<typename Action>
    auto withField(std::size_t index, Action&& action) {
        const std::lock_guard lock(mutex_);
        return action(*fields_[index]);
    }

private:
    void apply(const KeyEvent& event);
    void typeText(const std::string& text);
    void actOnKey(const KeyEvent& event);
    bool actOnChord(const KeyEvent& event);
    void remember() { undo_.push_back(focused().text()); }
    void pasteLater(SimulatedClipboard& from);
    TextField& focused() { return *fields_[focusedField_]; }
    const TextField& focused() const { return *fields_[focusedField_]; }

    const FrontApplication identity_;
    const Manner manner_;
    VirtualClock& clock_;
    SimulatedClipboard& clipboard_;
    SimulatedClipboard& primarySelection_;
    mutable std::recursive_mutex mutex_;
    std::vector<std::unique_ptr<TextField>> fields_;
    std::size_t focusedField_ = 0;
    Point windowOrigin_{50, 50};
    std::vector<std::string> undo_; ///< what stood in the focused field before each change
    bool isHung_ = false;
    std::deque<KeyEvent> waitingKeys_;
    std::vector<ReceivedKey> received_;
};

} // namespace glyma::simulated
