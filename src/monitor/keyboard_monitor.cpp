#include "monitor/keyboard_monitor.h"

#include "monitor/monitor_implementation.h"
#include "monitor/website_exclusion.h"
#include "unicode/text.h"

#include <algorithm>
#include <utility>

namespace glyma {

namespace {

/// A caret of a usual size at the pointer, for when nobody knows where the caret is.
Rect caretAtPointer(Point pointer, const std::vector<Screen>& screens) {
    const auto screen =
        std::ranges::find_if(screens, [pointer](const Screen& each) { return each.frame.contains(pointer); });
    const double scale = screen == screens.end() ? 1 : screen->scale;
    return {pointer.x, pointer.y - 16 * scale, scale, 16 * scale};
}

} // namespace

// Tap thread

Verdict KeyboardMonitor::Implementation::hear(const KeyEvent& event) {
    switch (event.type) {
    case KeyEvent::Type::tapDisabledByTimeout:
        tap.enable();
        break;
    case KeyEvent::Type::flagsChanged:
        hearModifiers(event);
        break;
    case KeyEvent::Type::keyDown: {
        const auto heard = state.hear(event);
        perform(heard, event);
        return heard.verdict;
    }
    }
    return Verdict::pass;
}

void KeyboardMonitor::Implementation::hearModifiers(const KeyEvent& event) {
    if (const auto showing = state.openShowing())
        postFor(*showing, [isHeld = (event.flags & modifier::option) != 0](Implementation& self) {
            self.picker.setIsAltHeld(isHeld);
        });
}

void KeyboardMonitor::Implementation::perform(const Heard& heard, const KeyEvent& event) {
    if (event.hasReachedApplication)
        log.debug("Glyma: [tap] key {} could not be kept from the application", event.keyCode);
    const auto showing = heard.showing;
    switch (heard.effect) {
    case Effect::none:
        return;
    case Effect::keepPending:
        return log.debug("Glyma: [tap] dead key — keeping pending trigger");
    case Effect::clearPending:
        return event.flags & modifier::option ? void() : logFirstCharacter(event, false);
    case Effect::rememberSource:
        return rememberSource(heard.trigger);
    case Effect::showPanel:
        logFirstCharacter(event, true);
        return post([showing, trigger = heard.trigger, typed = heard.typed](Implementation& self) {
            self.showPanel(showing, trigger, typed);
        });
    case Effect::queryTyped:
        return postFor(showing,
                       [typed = heard.typed, text = typedTextOf(event), isAutorepeat = event.isAutorepeat](
                           Implementation& self) { self.handleTypedCharacter(isAutorepeat, text, typed); });
    case Effect::queryDeleted:
        return postFor(showing, [typed = heard.typed](Implementation& self) { self.handleBackspace(typed); });
    case Effect::queryDisturbed:
        return postFor(showing, [](Implementation& self) {
            if (self.queryPoll)
                self.queryPoll->disturbed();
        });
    case Effect::moveDown:
        return postFor(showing, [](Implementation& self) { self.picker.moveSelection(1); });
    case Effect::moveUp:
        return postFor(showing, [](Implementation& self) { self.picker.moveSelection(-1); });
    case Effect::choose:
        return postFor(showing, [hold = heard.hold](Implementation& self) { self.chooseOrDismiss(hold); });
    case Effect::dismissPanel:
        return postFor(showing, [](Implementation& self) { self.dismissPanel(); });
    case Effect::showCharacterInfo:
        return post([](Implementation& self) { self.showCharacterInfoForSelection(); });
    case Effect::closeCharacterInfo:
        return post([](Implementation& self) { self.closeCharacterInfo(); });
    }
}

void KeyboardMonitor::Implementation::logFirstCharacter(const KeyEvent& event, bool isVisible) {
    if (!log.debugEnabled())
        return;
    const auto typed = typedTextOf(event);
    log.debug("Glyma: [tap] firstChar={} scalars={} visible={}", log.redactQuoted(typed),
              unicode::scalars(typed).size(), isVisible);
}

// Any thread

void KeyboardMonitor::Implementation::post(std::function<void(Implementation&)> action) {
    scheduler.post([weak = weak_from_this(), action = std::move(action)] {
        if (const auto self = weak.lock())
            self->run(action);
    });
}

/// Runs the action if that showing of the picker is still there.
void KeyboardMonitor::Implementation::postFor(Showing showing, std::function<void(Implementation&)> action) {
    post([showing, action = std::move(action)](Implementation& self) {
        if (self.shown == showing)
            action(self);
    });
}

// Main thread

void KeyboardMonitor::Implementation::showPanel(Showing showing, TriggerNumber trigger,
                                                const TypedText& typed) {
    if (showing <= cancelled || isTriggerRefused)
        return;
    const auto front = frontApplications.current();
    text.setSourceAppPID(front.process);
    text.cacheSourceFocusedElement();
    if (isExcludedWebsite(front.identifier, text, preferences).value_or(false))
        return refuse(trigger, false);
    state.allow(trigger);
    shown = showing;
    setTyped(typed);

    const bool isKeystrokeMode = !text.focusedElementReportsSelection();
    if (!isKeystrokeMode)
        poll(showing, typed);
    else
        pollWhenFound(showing, 0);
    state.setKeystrokeMode(showing, isKeystrokeMode);
    log.debug("Glyma: [showPanel] isKeystrokeMode={} app={}", isKeystrokeMode,
              front.identifier.value_or("?"));
    picker.setIsKeystrokeMode(isKeystrokeMode);

    const auto known = text.caretBounds();
    const auto caret = known ? *known : caretAtPointer(screens.pointerLocation(), screens.all());
    fillPicker(showing);
    showAt(caret);
    if (!globalMouseMonitor)
        globalMouseMonitor = mouse.observe([weak = weak_from_this()](MouseEvent event) {
            if (const auto self = weak.lock())
                self->hearMouse(event);
        });
}

void KeyboardMonitor::Implementation::showAt(const Rect& caret) {
    window.placeAtCaret(caret);
    window.orderFront();
    window.showCaretOverlay(caret);
    targetWindow.remember();
}

void KeyboardMonitor::Implementation::fillPicker(Showing showing) {
    picker.setTrigger(preferences.triggerCharacter());
    picker.setQuery(queryBuffer);
    picker.setSelectedIndex(0);
    picker.setOnSelection([weak = weak_from_this()](const PickerItem& item) {
        if (const auto self = weak.lock())
            self->didSelect(item);
    });
    picker.setOnDismiss([weak = weak_from_this(), showing] {
        if (const auto self = weak.lock())
            self->close(showing);
    });
}

void KeyboardMonitor::Implementation::setTyped(const TypedText& typed) {
    typedKeys = typed;
    queryBuffer = typed.query();
    keystrokeCount = typed.keystrokeCount();
}

void KeyboardMonitor::Implementation::setQuery(const TypedText& typed) {
    setTyped(typed);
    searchQueryBuffer();
}

void KeyboardMonitor::Implementation::searchQueryBuffer() {
    picker.setTrigger(preferences.triggerCharacter());
    picker.setQuery(queryBuffer);
}

void KeyboardMonitor::Implementation::dismissPanel() {
    queryPoll.reset();
    globalMouseMonitor.reset();
    targetWindow.forget();
    queryBuffer.clear();
    keystrokeCount = 0;
    state.setKeystrokeMode(std::exchange(shown, 0), false);
    text.forgetSourceElement();
    text.setSourceAppPID(0);
    picker.setIsKeystrokeMode(false);
    picker.setIsAltHeld(false);
    window.hide();
}

/// Closes the picker on behalf of the main thread, also one that the tap thread has opened and nobody has
/// shown yet.
void KeyboardMonitor::Implementation::close(Showing showing) {
    state.close(showing);
    cancelled = std::max(cancelled, showing);
    if (shown != 0 && shown <= showing)
        dismissPanel();
}

void KeyboardMonitor::Implementation::appSwitch(const FrontApplication& application) {
    state.setFront(application);
    const auto open = state.openShowing();
    log.debug("Glyma: [appSwitch] id={} pid={} isPanelVisible={}", application.identifier.value_or("nil"),
              application.process, open.has_value());
    if (application.identifier == ownIdentifier)
        return;
    if (open)
        close(*open);
    state.clearPendingTrigger();
}

void KeyboardMonitor::Implementation::readSettings() {
    TapSettings settings;
    settings.trigger = preferences.triggerCharacter();
    if (const auto shortcut = preferences.characterInfoShortcut(); shortcut && !flags.isRecordingShortcut)
        settings.shortcut = KeyChord{shortcut->keyCode, shortcut->modifierRawValue};
    for (const auto& application : preferences.excludedApps())
        if (application.isExcluded)
            settings.excludedApplications.insert(application.bundleID);
    settings.isCharacterInfoShowing = flags.isCharacterInfoShowing;
    settings.isTestFieldFocused = flags.isTestFieldFocused;
    state.setSettings(std::move(settings));
}

KeyboardMonitor::KeyboardMonitor(MonitorServices services)
    : implementation_(std::make_shared<Implementation>(std::move(services))) {}

KeyboardMonitor::~KeyboardMonitor() {
    if (implementation_->isStarted)
        stop();
}

std::expected<void, std::string> KeyboardMonitor::start() {
    auto& self = *implementation_;
    const auto weakly = [weak = std::weak_ptr(implementation_)](auto action) {
        return [weak, action](const auto&... arguments) {
            if (const auto monitor = weak.lock())
                action(*monitor, arguments...);
        };
    };
    self.state.setFront(self.frontApplications.current());
    self.readSettings();
    auto started = self.tap.start([weak = std::weak_ptr(implementation_)](const KeyEvent& event) {
        const auto monitor = weak.lock();
        return monitor ? monitor->hear(event) : Verdict::pass;
    });
    if (!started)
        return started;
    self.isStarted = true;
    self.state.setTapRunning(true);
    self.activation = self.frontApplications.observe(
        weakly([](Implementation& monitor, const FrontApplication& application) {
            monitor.appSwitch(application);
        }));
    self.preferencesChanged =
        self.preferences.changed.connect(weakly([](Implementation& monitor) { monitor.readSettings(); }));
    self.flagsChanged =
        self.flags.changed.connect(weakly([](Implementation& monitor) { monitor.readSettings(); }));
    return {};
}

void KeyboardMonitor::stop() {
    auto& self = *implementation_;
    self.isStarted = false;
    self.globalMouseMonitor.reset();
    self.activation.reset();
    self.preferencesChanged.reset();
    self.flagsChanged.reset();
    self.tap.stop();
    self.state.setTapRunning(false);
}

void KeyboardMonitor::focusMoved() {
    implementation_->focusMoved();
}

bool KeyboardMonitor::isPanelVisible() const {
    return implementation_->state.isPanelVisible();
}

bool KeyboardMonitor::isPendingTrigger() const {
    return implementation_->state.isPendingTrigger();
}

} // namespace glyma
