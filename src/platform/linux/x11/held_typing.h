#pragma once

#include "platform/linux/x11/keyboard_link.h"
#include "platform/linux/x11/keyboard_map.h"
#include "platform/linux/x11/typing_state.h"

#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <vector>

namespace glyma::x11 {

/// The user's keys: which are down, and those that wait while typing is held and are delivered afterwards.
/// Tap thread.
///
/// Three answers to "is this key down" differ while typing is held: the user's fingers say one, as far as the
/// tap has heard of them; the server knows the same but for keys that we let go for the user; and the
/// application knows what has been delivered to it. A delivery asks the server and first makes its keys those
/// of the application, unseen by it, then moves the keys as the user moved them, on the keyboards that they
/// are on, and unseen makes the server's keys again what they were. When everything has been delivered all
/// three agree.
class HeldTyping {
public:
    /// Something the user did, with all that it meant at the time.
    struct Event {
        TimedMove move;                   ///< key 0: no key, the modifiers in effect have changed
        xcb_input_device_id_t device = 0; ///< as for reachedApplication()
        Locks locks;
        std::optional<KeyEvent> heard; ///< what the callback is to be told
        /// It came amid keys that we moved: of two moves of the same key, ours and the user's, either may
        /// have been taken for the other.
        bool mayBeOurs = false;
        bool wasKept = false;
        bool hasReachedApplication = false;
    };
    struct Tap {
        /// Asks the callback.
        std::function<Verdict(const KeyEvent&)> hear;
        /// Takes what the server has sent the tap by now: it comes back as moved() and keep().
        std::function<void()> readEvents;
        /// For an event that was not kept from the application after all.
        std::function<void(const Event&)> hearLive;
        /// The locks in effect.
        std::function<Locks()> locks;
    };
    HeldTyping(KeyboardLink& link, Tap tap);

    void setMap(const KeyboardMap& map) { map_ = &map; }

    // Always
    /// The user has moved a key.
    void moved(KeyMove move);
    /// A move that nothing kept has reached the application.
    /// \param device  on which the key can be moved, as KeyboardLink::deviceFor tells.
    void reachedApplication(KeyMove move, xcb_input_device_id_t device);
    bool isDown(xcb_keycode_t key) const { return down_.contains(key); }

    // While typing is held
    void keep(Event event) { arrived_.push_back(std::move(event)); }
    /// Whether something typed behind the key that chose has reached the application, because the hold did
    /// not stand yet. One round trip when something new has been typed.
    bool hasLeaked();
    /// Delivers what waits until a new hold begins, or nothing waits any more and typing is free again.
    void deliver();
    /// Gives back what arrived although typing could not be held.
    void giveUp();

private:
    using Keys = std::map<xcb_keycode_t, xcb_input_device_id_t>;
    void sort();
    void readKept();
    bool takeKept(const TimedMove& move, xcb_timestamp_t tolerance);
    void deliverWaiting();
    void deliver(Event& event);
    void deliverPress(Event& event);
    bool mayBeClaimed(const KeyEvent& event) const;
    void send(const Event& event);
    void flush();
    bool finish();
    bool isLock(xcb_keycode_t key) const { return map_->shifts(key) && !map_->isHeldModifier(key); }
    Injection plan(const std::vector<Event>& batch, const Keys& shownBefore, const Keys& server);
    static Keys turn(FakeKeys& keys, const Keys& from, const Keys& to);

    KeyboardLink& link_;
    Tap tap_;
    const KeyboardMap* map_ = nullptr;
    std::set<xcb_keycode_t> down_;
    /// Down for the application.
    Keys shown_;
    std::vector<Event> arrived_;
    std::size_t examined_ = 0; ///< of arrived_, by hasLeaked()
    /// What the grab has told of and the tap has not.
    std::vector<TimedMove> kept_;
    std::deque<Event> waiting_;
    /// What the last batch has pressed, and moved last for the application.
    Keys pressed_;
    KeyMove lastSent_;
    /// To be sent next; the application's keys before it.
    std::vector<Event> batch_;
    Keys shownBefore_;
};

} // namespace glyma::x11
