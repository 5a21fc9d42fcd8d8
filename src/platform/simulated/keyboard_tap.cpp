#include "platform/simulated/keyboard_tap.h"

#include <utility>

namespace glyma::simulated {

namespace {

bool wasClaimed(KeyClaims claims, const KeyEvent& event) {
    if (event.isAutorepeat)
        claims.shortcut.reset();
    return isClaimed(claims, event.keyCode, event.flags);
}

} // namespace

std::expected<void, std::string> SimulatedTap::start(Callback callback) {
    if (!refusal.empty())
        return std::unexpected(refusal);
    const std::lock_guard lock(mutex_);
    callback_ = std::move(callback);
    isDisabled_ = false;
    return {};
}

void SimulatedTap::stop() {
    const std::lock_guard lock(mutex_);
    callback_ = nullptr;
    claims_ = {};
}

void SimulatedTap::enable() {
    const std::lock_guard lock(mutex_);
    isDisabled_ = false;
}

void SimulatedTap::claim(const KeyClaims& claims) {
    const std::lock_guard lock(mutex_);
    claims_ = claims;
    isOvertaken_ |= delivering_ != std::this_thread::get_id();
}

std::shared_ptr<TypingHold> SimulatedTap::holdTyping() {
    return hold ? hold() : nullptr;
}

Verdict SimulatedTap::deliver(const KeyEvent& event) {
    Callback callback;
    KeyClaims before;
    bool wasDisabled = false;
    bool isHeldByUs = false;
    {
        const std::lock_guard lock(mutex_);
        callback = callback_;
        before = claims_;
        wasDisabled = isDisabled_;
        delivering_ = std::this_thread::get_id();
        isOvertaken_ = false;
        isHeldByUs = event.isAutorepeat && consumedKey_ == event.keyCode;
    }
    if (!callback)
        return Verdict::pass;
    if (wasDisabled) {
        callback({KeyEvent::Type::tapDisabledByTimeout, keycode::unknown, 0, false, {}});
        return Verdict::pass;
    }
    const auto verdict = callback(event);
    const bool isConsumed = verdict == Verdict::consume;
    if (event.type != KeyEvent::Type::keyDown)
        return Verdict::pass;
    const std::lock_guard lock(mutex_);
    consumedKey_ = isConsumed ? std::optional(event.keyCode) : std::nullopt;
    if (!isOvertaken_ &&
        isConsumed != (isHeldByUs || (wasClaimed(before, event) && !event.hasReachedApplication)))
        disagreements_.push_back(
            "key " + std::to_string(event.keyCode) + " flags " + std::to_string(event.flags) +
            (isConsumed ? " was consumed but not claimed" : " was claimed but not consumed"));
    return verdict;
}

void SimulatedTap::disableByTimeout() {
    const std::lock_guard lock(mutex_);
    isDisabled_ = true;
}

bool SimulatedTap::isRunning() const {
    const std::lock_guard lock(mutex_);
    return static_cast<bool>(callback_);
}

KeyClaims SimulatedTap::claims() const {
    const std::lock_guard lock(mutex_);
    return claims_;
}

bool SimulatedTap::keeps(const KeyEvent& event) const {
    const std::lock_guard lock(mutex_);
    return wasClaimed(claims_, event);
}

std::vector<std::string> SimulatedTap::disagreements() const {
    const std::lock_guard lock(mutex_);
    return disagreements_;
}

} // namespace glyma::simulated
