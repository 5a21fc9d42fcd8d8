#include "platform/linux/x11/held_typing.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace glyma::x11 {

HeldTyping::HeldTyping(KeyboardLink& link, Tap tap)
    : link_(link)
    , tap_(std::move(tap)) {}

void HeldTyping::moved(KeyMove move, xcb_input_device_id_t device) {
    if (move.isPress) {
        down_[move.key] = device;
    } else {
        down_.erase(move.key);
        lifted_.erase(move.key);
    }
}

void HeldTyping::reachedApplication(KeyMove move) {
    if (!move.isPress)
        shown_.erase(move.key);
    else if (const auto found = down_.find(move.key); found != down_.end() && !isLock(move.key))
        shown_.insert(*found);
}

void HeldTyping::consumed(xcb_keycode_t key) {
    if (const auto found = down_.find(key); found != down_.end())
        lifted_.insert(*found);
}

void HeldTyping::deliver() {
    while (link_.isHolding() && link_.currentHold() == 0) {
        tap_.readEvents();
        sort();
        if (!waiting_.empty())
            deliverWaiting();
        else if (finish())
            return;
    }
}

/// What the grab has not told of went to the application: a moment before the grab stood, or while it was
/// open for other keys. But a key that we have just pressed for the application, and that the user had let go
/// by then, is down for the server, which drops his next press of it.
void HeldTyping::sort() {
    auto arrived = std::exchange(arrived_, {});
    if (arrived.empty())
        return;
    readKept();
    // The same key moved by us and by the user at the same instant: either may have been taken for the other.
    constexpr xcb_timestamp_t sameInstant = 4;
    for (const auto tolerance : {xcb_timestamp_t{0}, sameInstant})
        for (auto& event : arrived)
            event.wasKept = event.wasKept || takeKept(event.move, tolerance);
    for (auto& event : arrived) {
        const auto& key = event.move.key;
        event.hasReachedApplication =
            key.isPress && !event.wasKept && !pressed_.contains(key.key) && !shown_.contains(key.key);
        waiting_.push_back(std::move(event));
    }
}

bool HeldTyping::takeKept(const TimedMove& move, xcb_timestamp_t tolerance) {
    const auto found = std::ranges::find_if(kept_, [&](const TimedMove& each) {
        return each.key == move.key && each.time - move.time + tolerance <= 2 * tolerance;
    });
    if (found == kept_.end())
        return false;
    kept_.erase(found);
    return true;
}

/// The grab may tell of keys that the tap has not heard of yet.
void HeldTyping::readKept() {
    std::ranges::copy(link_.takeKept(), std::back_inserter(kept_));
}

void HeldTyping::deliverWaiting() {
    while (!waiting_.empty() && link_.currentHold() == 0) {
        auto event = std::move(waiting_.front());
        waiting_.pop_front();
        deliver(event);
    }
    flush();
}

void HeldTyping::deliver(Event& event) {
    const auto key = event.move.key.key;
    if (key == 0)
        tap_.hear(*event.heard);
    else if (event.move.key.isPress)
        deliverPress(event);
    else if (shown_.contains(key))
        send(event);
}

void HeldTyping::deliverPress(Event& event) {
    const auto key = event.move.key.key;
    if (isLock(key))
        return; // its effect is in the locks of the keys that follow
    if (event.heard && tap_.hear(*event.heard) == Verdict::consume)
        return consumed(key);
    if (event.hasReachedApplication)
        return reachedApplication(event.move.key);
    send(event);
    // The next verdict may claim such a key: it would not reach the application any more.
    if (event.heard && mayBeClaimed(*event.heard))
        flush();
}

bool HeldTyping::mayBeClaimed(const KeyEvent& event) const {
    constexpr auto chordFlags = modifier::controlOptionOrCommand;
    return (event.flags & chordFlags) || isClaimed({.pickerKeys = true, .escape = true, .shortcut = {}},
                                                   event.keyCode, event.flags & ~chordFlags);
}

void HeldTyping::send(const Event& event) {
    if (batch_.empty()) {
        serverBefore_ = onServer();
        shownBefore_ = shown_;
    }
    const auto key = event.move.key.key;
    if (event.move.key == KeyMove{lastSent_.key, true} && !lastSent_.isPress) {
        flush();
        link_.pause();
        tap_.readEvents();
        serverBefore_ = onServer();
        shownBefore_ = shown_;
    }
    lastSent_ = event.move.key;
    if (event.move.key.isPress) {
        shown_[key] = event.device;
        lifted_.erase(key);
    } else {
        shown_.erase(key);
    }
    batch_.push_back(event);
}

void HeldTyping::flush() {
    if (batch_.empty())
        return;
    FakeKeys keys;
    pressed_ = turn(keys, serverBefore_, shownBefore_);
    // The server ignores the press of a key that is down, which it may be by now.
    for (const auto& event : batch_)
        if (event.move.key.isPress && !shownBefore_.contains(event.move.key.key))
            keys.release(event.move.key.key, link_.deviceFor(event.device));
    const auto locksNow = tap_.locks();
    auto locks = locksNow;
    for (const auto& event : std::exchange(batch_, {})) {
        const auto key = event.move.key.key;
        if (event.move.key.isPress && event.locks != locks) {
            keys.setHidden(true);
            keys.lock(locks = event.locks);
        }
        keys.setHidden(false);
        const auto device = link_.deviceFor(event.device);
        event.move.key.isPress ? keys.press(key, device) : keys.release(key, device);
        if (event.move.key.isPress)
            pressed_[key] = device;
    }
    keys.setHidden(true);
    if (locks != locksNow)
        keys.lock(locksNow);
    const auto server = onServer();
    pressed_.merge(turn(keys, shown_, server));
    // The user may have let go by now what we take for down.
    std::vector<HeldKey> restored;
    for (const auto& [key, device] : server)
        restored.push_back({key, link_.deviceFor(device)});
    link_.replay(keys, std::move(restored));
}

HeldTyping::Keys HeldTyping::onServer() const {
    Keys keys = down_;
    std::erase_if(keys, [&](const auto& each) { return lifted_.contains(each.first) || isLock(each.first); });
    return keys;
}

/// \return what was pressed.
HeldTyping::Keys HeldTyping::turn(FakeKeys& keys, const Keys& from, const Keys& to) {
    keys.setHidden(true);
    Keys pressed;
    for (const auto& [key, device] : from)
        if (!to.contains(key))
            keys.release(key, link_.deviceFor(device));
    for (const auto& [key, device] : to)
        if (!from.contains(key)) {
            pressed[key] = link_.deviceFor(device);
            keys.press(key, pressed[key]);
        }
    return pressed;
}

/// Lets typing free, with the server keeping what is typed in the moment in which we look whether something
/// has still come to us. \return whether typing is free.
bool HeldTyping::finish() {
    link_.freeze();
    tap_.readEvents();
    if (!arrived_.empty())
        readKept();
    const auto isOurs = [&](const Event& event) {
        const auto& move = event.move.key;
        return move.isPress ? std::ranges::find(kept_, event.move) != kept_.end() : shown_.contains(move.key);
    };
    if (std::ranges::any_of(arrived_, isOurs)) {
        link_.thaw();
        sort();
        return false;
    }
    link_.endHold();
    kept_.clear();
    pressed_.clear();
    giveUp();
    return true;
}

void HeldTyping::giveUp() {
    for (auto& event : std::exchange(arrived_, {}))
        if (link_.isHolding()) // the one before it has begun a hold
            keep(std::move(event));
        else
            tap_.hearLive(event);
}

} // namespace glyma::x11
