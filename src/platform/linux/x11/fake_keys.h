#pragma once

#include "platform/linux/x11/connection.h"
#include "platform/linux/x11/echo_ledger.h"
#include "platform/linux/x11/keyboard_hold.h"
#include "platform/linux/x11/typing_state.h"

#include <xcb/xinput.h>

#include <optional>
#include <vector>

namespace glyma::x11 {

/// Moves keys as if the user did, several in one go: nothing of the user's comes between them.
class FakeKeys {
public:
    /// Milliseconds. Many programs take a press that bears the time of the release before it for a repeat of
    /// a held key, and Firefox skips repeats while a page is busy (BrowserChild::SkipRepeatedKeyEvent): a
    /// BackSpace was lost.
    static constexpr std::uint32_t betweenPresses = 2;
    /// The device that moves no key of the user's keyboards.
    static constexpr xcb_input_device_id_t ownDevice = 0;

    /// \param device  a slave keyboard: the key then moves on it, so that the user's own later press or
    /// release of
    ///                it counts as done already.
    void press(xcb_keycode_t key, xcb_input_device_id_t device = ownDevice) { add(key, true, device); }
    void release(xcb_keycode_t key, xcb_input_device_id_t device = ownDevice) { add(key, false, device); }
    void tap(xcb_keycode_t key) {
        press(key);
        release(key);
    }
    /// What is moved from now on stays hidden from applications, as far as typing is held; at first nothing
    /// is.
    void setHidden(bool isHidden) { isHidden_ = isHidden; }
    /// Sets the locked modifiers and layout.
    void lock(const Locks& locks) { moves_.push_back({{}, ownDevice, isHidden_, locks}); }
    bool isEmpty() const { return moves_.empty(); }
    /// Whether the server moves keys on this keyboard for us. One round trip.
    /// \param idleKey  a key that is up: its release is tried.
    static bool canMove(const Connection& connection, xcb_input_device_id_t device, xcb_keycode_t idleKey);

    /// Writes all of it to the connection's buffer; the caller flushes.
    /// \param witness  the window in which the tap sees the marks; XCB_WINDOW_NONE when there is no tap.
    /// \param hold     is opened for what is not hidden; where it does not stand, for everything.
    /// \return the sequence number of the mark behind the last key, 0 without a witness.
    EchoLedger::Batch write(const Connection& connection, EchoLedger& echoes, xcb_window_t witness,
                            const KeyboardHold* hold = nullptr) const;

private:
    struct Move {
        KeyMove key;
        xcb_input_device_id_t device = ownDevice;
        bool isHidden = false;
        std::optional<Locks> locks; ///< no key, but these
    };
    void add(xcb_keycode_t key, bool isPress, xcb_input_device_id_t device) {
        moves_.push_back({{key, isPress}, device, isHidden_, std::nullopt});
    }
    std::vector<Move> moves_;
    bool isHidden_ = false;
};

/// What a mark says, in the order of its 32-bit words: the batch, then whether it begins or ends it.
struct EchoMark {
    EchoLedger::Batch batch = 0;
    bool isEnd = false;
};
/// The mark in a client message to the witness.
EchoMark readMark(const xcb_client_message_event_t& event);

} // namespace glyma::x11
