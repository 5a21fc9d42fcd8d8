#include "monitor/monitor_state.h"

#include <utility>

namespace glyma {

/// A step that changes something: ends by telling the tap.
struct MonitorState::Locked {
    explicit Locked(MonitorState& itsState)
        : state(itsState)
        , lock(itsState.mutex_) {}
    ~Locked() { state.announce(); }
    Locked(const Locked&) = delete;
    Locked& operator=(const Locked&) = delete;

    MonitorState& state;
    std::lock_guard<std::mutex> lock;
};

MonitorState::MonitorState(KeyboardTap& tap, std::string ownIdentifier)
    : tap_(tap)
    , ownIdentifier_(std::move(ownIdentifier)) {}

void MonitorState::announce() {
    const KeyClaims claims{isPanelVisible_, settings_.isCharacterInfoShowing, settings_.shortcut};
    if (!isTapRunning_ || claims == claims_)
        return;
    claims_ = claims;
    tap_.claim(claims);
}

Heard MonitorState::hear(const KeyEvent& event) {
    const Locked locked(*this);
    ++keysHeard_;
    auto heard = hearOwnShortcuts(event).value_or(Heard{});
    if (heard.effect == Effect::none)
        heard = step(event);
    if (heard.effect == Effect::choose)
        heard.hold = tap_.holdTyping(); // before the claims are given up: no key may come in between
    if (event.hasReachedApplication)
        heard.verdict = Verdict::pass;
    if (event.isAutorepeat && consumedKey_ == event.keyCode)
        heard.verdict = Verdict::consume;
    consumedKey_ = heard.verdict == Verdict::consume ? std::optional(event.keyCode) : std::nullopt;
    return heard;
}

std::optional<Heard> MonitorState::hearOwnShortcuts(const KeyEvent& event) {
    const KeyClaims shortcut{false, false, settings_.shortcut};
    const KeyClaims escape{false, settings_.isCharacterInfoShowing, std::nullopt};
    if (!event.isAutorepeat && isClaimed(shortcut, event.keyCode, event.flags))
        return Heard{Verdict::consume, Effect::showCharacterInfo, 0, {}, 0, nullptr};
    if (isClaimed(escape, event.keyCode, event.flags))
        return Heard{Verdict::consume, Effect::closeCharacterInfo, 0, {}, 0, nullptr};
    return std::nullopt;
}

Heard MonitorState::step(const KeyEvent& event) {
    const auto text = typedTextOf(event);
    const auto key = meaningOf(event, text, settings_.trigger, isPanelVisible_ && typed_.isLastCharacter());
    auto taken = transition(trigger(), key);
    const bool isCommand = key == KeyMeaning::command || key == KeyMeaning::commandDelete;
    if (!isPanelVisible_ && isSilentHere() && !isCommand)
        taken = {};
    if (taken.effect == Effect::showPanel) {
        ++showing_;
        // Until the main thread has looked at the target.
        isKeystrokeMode_ = true;
        typed_ = TypedText(text);
    } else if (taken.effect == Effect::queryTyped) {
        typed_.type(text, event.isAutorepeat);
    } else if (taken.effect == Effect::queryDeleted) {
        typed_.deleteLast();
    } else if (taken.effect == Effect::rememberSource) {
        permission_.ask();
    }
    if (taken.verdict == Verdict::consume)
        permission_.take({event.keyCode, event.flags});
    setTrigger(taken.next);
    return {taken.verdict, taken.effect, showing_, typed_, permission_.asked(), nullptr};
}

/// Our own windows, but for the field that is there to try the picker in; applications that the user
/// excluded.
bool MonitorState::isSilentHere() const {
    if (!cachedFrontBundleID_)
        return false;
    if (*cachedFrontBundleID_ == ownIdentifier_ && !settings_.isTestFieldFocused)
        return true;
    return settings_.excludedApplications.contains(*cachedFrontBundleID_);
}

TriggerState MonitorState::trigger() const {
    return isPanelVisible_     ? (isKeystrokeMode_ ? TriggerState::open : TriggerState::polled)
           : isPendingTrigger_ ? TriggerState::pending
                               : TriggerState::idle;
}

void MonitorState::setTrigger(TriggerState state) {
    isPanelVisible_ = state == TriggerState::open || state == TriggerState::polled;
    isPendingTrigger_ = state == TriggerState::pending;
}

bool MonitorState::isPanelVisible() const {
    const std::lock_guard lock(mutex_);
    return isPanelVisible_;
}

bool MonitorState::isPendingTrigger() const {
    const std::lock_guard lock(mutex_);
    return isPendingTrigger_;
}

bool MonitorState::isKeystrokeMode() const {
    const std::lock_guard lock(mutex_);
    return isKeystrokeMode_;
}

std::optional<Showing> MonitorState::openShowing() const {
    const std::lock_guard lock(mutex_);
    return isPanelVisible_ ? std::optional(showing_) : std::nullopt;
}

FrontApplication MonitorState::front() const {
    const std::lock_guard lock(mutex_);
    return {cachedFrontBundleID_, cachedFrontPID_};
}

void MonitorState::setSettings(TapSettings settings) {
    const Locked locked(*this);
    settings_ = std::move(settings);
}

void MonitorState::setFront(const FrontApplication& application) {
    const Locked locked(*this);
    cachedFrontBundleID_ = application.identifier;
    cachedFrontPID_ = application.process;
}

void MonitorState::setKeystrokeMode(Showing showing, bool value) {
    const Locked locked(*this);
    if (showing_ == showing)
        isKeystrokeMode_ = value;
}

TypedText MonitorState::typed() const {
    const std::lock_guard lock(mutex_);
    return typed_;
}

void MonitorState::close(Showing showing) {
    const Locked locked(*this);
    if (showing_ == showing)
        isPanelVisible_ = false;
}

void MonitorState::clearPendingTrigger() {
    const Locked locked(*this);
    isPendingTrigger_ = false;
}

std::uint64_t MonitorState::keysHeard() const {
    const std::lock_guard lock(mutex_);
    return keysHeard_;
}

bool MonitorState::leaveUnlessHeard(std::uint64_t keysHeard, bool isPending) {
    const Locked locked(*this);
    if (keysHeard_ != keysHeard)
        return false;
    setTrigger(isPending ? TriggerState::pending : TriggerState::idle);
    return true;
}

void MonitorState::allow(TriggerNumber trigger) {
    const Locked locked(*this);
    permission_.allow(trigger);
}

std::vector<KeyChord> MonitorState::refuse(TriggerNumber trigger) {
    const Locked locked(*this);
    if (permission_.asked() == trigger)
        setTrigger(TriggerState::idle);
    return permission_.refuse(trigger);
}

void MonitorState::setTapRunning(bool isRunning) {
    const Locked locked(*this);
    isTapRunning_ = isRunning;
    claims_ = {};
}

} // namespace glyma
