#include "platform/linux/x11/held_typing.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace glyma::x11 {

HeldTyping::HeldTyping(KeyboardLink& link, Tap tap)
    : link_(link)
    , tap_(std::move(tap)) {}

void HeldTyping::moved(KeyMove move) {
    if (move.isPress)
        down_.insert(move.key);
    else
        down_.erase(move.key);
}

/// The key may be up again by now: shown_ follows what the application has seen so far.
void HeldTyping::reachedApplication(KeyMove move, xcb_input_device_id_t device) {
    if (!move.isPress)
        shown_.erase(move.key);
    else if (!isLock(move.key))
        shown_[move.key] = device;
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
    examined_ = 0;
    if (arrived.empty())
        return;
    readKept();
    for (auto& event : arrived)
        event.wasKept = takeKept(event.move, 0);
    constexpr xcb_timestamp_t sameInstant = 4;
    for (auto& event : arrived)
        event.wasKept = event.wasKept || (event.mayBeOurs && takeKept(event.move, sameInstant));
    for (auto& event : arrived) {
        const auto& key = event.move.key;
        event.hasReachedApplication =
            key.isPress && !event.wasKept && !pressed_.contains(key.key) && !shown_.contains(key.key);
        waiting_.push_back(std::move(event));
    }
}

bool HeldTyping::hasLeaked() {
    if (examined_ >= arrived_.size())
        return false;
    readKept();
    const auto isLeak = [&](const Event& event) {
        const auto key = event.move.key.key;
        return event.move.key.isPress && event.heard && !event.mayBeOurs && !shown_.contains(key) &&
               !pressed_.contains(key) && std::ranges::find(kept_, event.move) == kept_.end();
    };
    const auto first =
        arrived_.begin() + static_cast<std::ptrdiff_t>(std::exchange(examined_, arrived_.size()));
    return std::any_of(first, arrived_.end(), isLeak);
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
    if (event.heard)
        event.heard->hasReachedApplication = event.hasReachedApplication;
    if (event.heard && tap_.hear(*event.heard) == Verdict::consume)
        return;
    if (event.hasReachedApplication) {
        flush(); // what waits before it is sent before what comes after it
        return reachedApplication(event.move.key, event.device);
    }
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
    const auto key = event.move.key.key;
    if (event.move.key == KeyMove{lastSent_.key, true} && !lastSent_.isPress) {
        flush();
        link_.pause();
        tap_.readEvents();
    }
    if (batch_.empty())
        shownBefore_ = shown_;
    lastSent_ = event.move.key;
    if (event.move.key.isPress)
        shown_[key] = event.device;
    else
        shown_.erase(key);
    batch_.push_back(event);
}

void HeldTyping::flush() {
    if (batch_.empty())
        return;
    const auto batch = std::exchange(batch_, {});
    link_.replay([&](const std::vector<HeldKey>& down) {
        Keys server;
        for (const auto& each : down)
            if (!isLock(each.key))
                server[each.key] = each.device;
        return plan(batch, shownBefore_, server);
    });
}

Injection HeldTyping::plan(const std::vector<Event>& batch, const Keys& shownBefore, const Keys& server) {
    Injection planned;
    auto& keys = planned.keys;
    pressed_ = turn(keys, server, shownBefore);
    // The server ignores the press of a key that is down, which it may be by now.
    for (const auto& event : batch)
        if (event.move.key.isPress && !shownBefore.contains(event.move.key.key))
            keys.release(event.move.key.key, event.device);
    const auto locksNow = tap_.locks();
    auto locks = locksNow;
    for (const auto& event : batch) {
        const auto& [key, isPress] = event.move.key;
        if (isPress && event.locks != locks) {
            keys.setHidden(true);
            keys.lock(locks = event.locks);
        }
        keys.setHidden(false);
        isPress ? keys.press(key, event.device) : keys.release(key, event.device);
        if (isPress)
            pressed_[key] = event.device;
    }
    keys.setHidden(true);
    if (locks != locksNow)
        keys.lock(locksNow);
    pressed_.merge(turn(keys, shown_, server));
    // Keyboards go on while other clients wait: the user may have let go by now what was down.
    for (const auto& [key, device] : server)
        planned.restored.push_back({key, device});
    return planned;
}

/// \return what was pressed.
HeldTyping::Keys HeldTyping::turn(FakeKeys& keys, const Keys& from, const Keys& to) {
    keys.setHidden(true);
    Keys pressed;
    for (const auto& [key, device] : from)
        if (!to.contains(key))
            keys.release(key, device);
    for (const auto& [key, device] : to)
        if (!from.contains(key)) {
            pressed[key] = device;
            keys.press(key, device);
        }
    return pressed;
}

/// Lets typing free, with the server keeping what is typed in the moment in which we look whether something
/// has still come to us. \return whether typing is free.
bool HeldTyping::finish() {
    link_.freeze();
    tap_.readEvents();
    readKept(); // also our own moves, which must not be taken for a claimed key's afterwards
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
    examined_ = 0;
    for (auto& event : std::exchange(arrived_, {}))
        if (link_.isHolding()) // the one before it has begun a hold
            keep(std::move(event));
        else
            tap_.hearLive(event);
}

} // namespace glyma::x11
