#include "monitor/keyboard_monitor.h"

#include "monitor/choice_reading.h"
#include "monitor/monitor_state.h"
#include "monitor/query_poll.h"
#include "monitor/selection_dispatch.h"
#include "monitor/target_reader.h"
#include "monitor/target_window.h"
#include "text/delayed_jobs.h"
#include "unicode/text.h"

#include <algorithm>
#include <utility>

namespace glyma {

namespace {

/// Lets the target move its caret.
constexpr Milliseconds clickRecheckDelay{50};
/// Lets the window manager put the window where it stays.
constexpr Milliseconds finalFollowDelay{100};

/// A caret of a usual size at the pointer, for when nobody knows where the caret is.
Rect caretAtPointer(Point pointer, const std::vector<Screen>& screens) {
    const auto screen =
        std::ranges::find_if(screens, [pointer](const Screen& each) { return each.frame.contains(pointer); });
    const double scale = screen == screens.end() ? 1 : screen->scale;
    return {pointer.x, pointer.y - 16 * scale, scale, 16 * scale};
}

} // namespace

struct KeyboardMonitor::Implementation : std::enable_shared_from_this<KeyboardMonitor::Implementation>,
                                         MonitorServices {
    explicit Implementation(MonitorServices services)
        : MonitorServices(std::move(services))
        , state(tap, ownIdentifier)
        , reader(tasks, scheduler)
        , targetWindow(accessibility, reader, window)
        , delayed(scheduler) {}

    // Tap thread
    Verdict hear(const KeyEvent& event);
    void hearModifiers(const KeyEvent& event);
    void perform(const Heard& heard, const KeyEvent& event);
    void rememberSource();
    void logFirstCharacter(const KeyEvent& event, bool isVisible);

    // Any thread
    void post(std::function<void(Implementation&)> action);
    void postFor(Showing showing, std::function<void(Implementation&)> action);

    // Main thread
    void showPanel(Showing showing, const TypedText& typed);
    void fillPicker(Showing showing);
    void setTyped(const TypedText& typed);
    void setQuery(const TypedText& typed);
    void searchQueryBuffer();
    void handleTypedCharacter(bool isAutorepeat, const std::string& text, const TypedText& typed);
    void handleBackspace(const TypedText& typed);
    void poll(Showing showing, const TypedText& typed);
    void queryRead();
    void followKeysInstead(Showing showing);
    void hearMouse(MouseEvent event);
    void recheckAfterClick();
    void judgeClick(const QueryReading& reading, std::uint64_t keysHeard);
    void chooseOrDismiss();
    void dismissPanel();
    void close(Showing showing);
    void didSelect(const PickerItem& item);
    void insertWhenRead(const std::string& inserted, const PolledQuery& chosen);
    std::string textFor(const PickerItem& item, const std::string& query, bool isAltHeld);
    void appSwitch(const FrontApplication& application);
    void readSettings();

    MonitorState state;

    // Main thread
    bool isStarted = false;
    Showing shown = 0;     ///< 0: none
    Showing cancelled = 0; ///< this one and those before it are not to be shown any more
    std::string queryBuffer;
    std::ptrdiff_t keystrokeCount = 0;
    /// While the query is followed in the target's text.
    std::optional<QueryPoll> queryPoll;
    TargetReader reader;
    TargetWindow targetWindow;
    DelayedJobs delayed;
    std::vector<std::unique_ptr<ChoiceReading>> choices;
    Subscription globalMouseMonitor;
    Subscription activation;
    Subscription preferencesChanged;
    Subscription flagsChanged;
};

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
    const auto showing = heard.showing;
    switch (heard.effect) {
    case Effect::none:
        return;
    case Effect::keepPending:
        return log.debug("Glyma: [tap] dead key — keeping pending trigger");
    case Effect::clearPending:
        return event.flags & modifier::option ? void() : logFirstCharacter(event, false);
    case Effect::rememberSource:
        return rememberSource();
    case Effect::showPanel:
        logFirstCharacter(event, true);
        return post([showing, typed = heard.typed](Implementation& self) { self.showPanel(showing, typed); });
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
        return postFor(showing, [](Implementation& self) { self.chooseOrDismiss(); });
    case Effect::dismissPanel:
        return postFor(showing, [](Implementation& self) { self.dismissPanel(); });
    case Effect::showCharacterInfo:
        return post([](Implementation& self) { self.showCharacterInfoForSelection(); });
    case Effect::closeCharacterInfo:
        return post([](Implementation& self) { self.closeCharacterInfo(); });
    }
}

/// On the main thread: an application that was never asked before can take tenths of a second to tell its
/// focused element, and keys heard meanwhile would reach it before the keys they open the picker for are
/// claimed.
void KeyboardMonitor::Implementation::rememberSource() {
    post([process = state.frontProcess()](Implementation& self) {
        self.text.setSourceAppPID(process);
        self.text.cacheSourceFocusedElement();
    });
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
            action(*self);
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

void KeyboardMonitor::Implementation::showPanel(Showing showing, const TypedText& typed) {
    if (showing <= cancelled)
        return;
    shown = showing;
    setTyped(typed);

    const auto front = frontApplications.current();
    text.setSourceAppPID(front.process);
    text.cacheSourceFocusedElement();
    const bool isKeystrokeMode = !text.focusedElementReportsSelection();
    if (!isKeystrokeMode)
        poll(showing, typed);
    state.setKeystrokeMode(showing, isKeystrokeMode);
    log.debug("Glyma: [showPanel] isKeystrokeMode={} app={}", isKeystrokeMode,
              front.identifier.value_or("?"));
    picker.setIsKeystrokeMode(isKeystrokeMode);

    const auto known = text.caretBounds();
    const auto caret = known ? *known : caretAtPointer(screens.pointerLocation(), screens.all());
    fillPicker(showing);
    window.placeAtCaret(caret);
    window.orderFront();
    window.showCaretOverlay(caret);
    targetWindow.remember();
    if (!globalMouseMonitor)
        globalMouseMonitor = mouse.observe([weak = weak_from_this()](MouseEvent event) {
            if (const auto self = weak.lock())
                self->hearMouse(event);
        });
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

void KeyboardMonitor::Implementation::handleTypedCharacter(bool isAutorepeat, const std::string& typedText,
                                                           const TypedText& typed) {
    if (queryPoll)
        queryPoll->typed(typedText);
    else if (isAutorepeat)
        setTyped(typed);
    else
        setQuery(typed);
}

void KeyboardMonitor::Implementation::handleBackspace(const TypedText& typed) {
    if (queryPoll)
        queryPoll->deletedLast();
    else
        setQuery(typed);
}

void KeyboardMonitor::Implementation::poll(Showing showing, const TypedText& typed) {
    const auto weakly = [weak = weak_from_this()](auto action) {
        return [weak, action] {
            if (const auto self = weak.lock())
                action(*self);
        };
    };
    queryPoll.emplace(QueryPoll::Services{scheduler, text, reader, state, picker, log}, showing,
                      preferences.triggerCharacter(), typed,
                      QueryPoll::Callbacks{.changed = weakly([](Implementation& self) { self.queryRead(); }),
                                           .left = weakly([](Implementation& self) { self.dismissPanel(); }),
                                           .mistrusted = weakly([showing](Implementation& self) {
                                               self.followKeysInstead(showing);
                                           })});
}

void KeyboardMonitor::Implementation::queryRead() {
    queryBuffer = queryPoll->query().query();
    keystrokeCount = queryPoll->query().keystrokeCount();
    searchQueryBuffer();
}

void KeyboardMonitor::Implementation::followKeysInstead(Showing showing) {
    log.debug("Glyma: [AX poll] the element does not show what is typed; following the keys");
    queryPoll.reset();
    state.setKeystrokeMode(showing, true);
    picker.setIsKeystrokeMode(true);
    const auto keysHeard = state.keysHeard();
    const auto typed = state.typed();
    if (!typed.query().empty())
        setQuery(typed);
    else if (state.leaveUnlessHeard(keysHeard, true))
        dismissPanel();
}

void KeyboardMonitor::Implementation::hearMouse(MouseEvent event) {
    switch (event) {
    case MouseEvent::leftUp:
        targetWindow.followTargetWindow(false);
        return delayed.after(finalFollowDelay, [this] { targetWindow.followTargetWindow(true); });
    case MouseEvent::leftDragged:
        return targetWindow.followTargetWindow(false);
    case MouseEvent::leftDown:
    case MouseEvent::otherDown:
        return delayed.after(clickRecheckDelay, [this] { recheckAfterClick(); });
    }
}

void KeyboardMonitor::Implementation::recheckAfterClick() {
    if (!state.isPanelVisible() && !state.isPendingTrigger())
        return;
    reader.ask([this] { return text.textBeforeCursor(); },
               [this, keysHeard = state.keysHeard()](const std::optional<std::string>& before) {
                   judgeClick(queryIn(before, preferences.triggerCharacter()), keysHeard);
               });
}

/// Closes the picker unless the caret still stands behind its query.
void KeyboardMonitor::Implementation::judgeClick(const QueryReading& reading, std::uint64_t keysHeard) {
    if (reading.outcome == QueryReading::Outcome::unavailable)
        return;
    const bool isWhereItWas = shown != 0 && ((reading.holdsQuery() && reading.query == queryBuffer) ||
                                             (queryPoll && queryPoll->query().accountsForKeys(reading)));
    if (isWhereItWas)
        return;
    const auto open = state.openShowing();
    const bool isBehindTrigger = reading.outcome == QueryReading::Outcome::query && reading.query.empty();
    if (!state.leaveUnlessHeard(keysHeard, isBehindTrigger)) {
        if (queryPoll)
            queryPoll->disturbed();
    } else if (open) {
        close(*open);
    }
}

/// Decided here and not on the tap thread: the list that the main thread had not searched when Return came is
/// there now. A highlight outside the list chooses nothing, and the picker must not stay behind.
void KeyboardMonitor::Implementation::chooseOrDismiss() {
    const auto showing = shown;
    if (picker.itemCount() > 0)
        picker.confirmSelection();
    if (shown == showing)
        dismissPanel();
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

void KeyboardMonitor::Implementation::didSelect(const PickerItem& item) {
    const auto isKeystrokeMode = state.isKeystrokeMode();
    const auto query = queryBuffer;
    const auto deletion = deletionOf(preferences.triggerCharacter(), query, keystrokeCount, isKeystrokeMode);
    if (log.debugEnabled())
        log.debug(
            "didSelect: queryBuffer=\"{}\" ({} chars), keystrokeCount={}, isKeystrokeMode={}, deleteCount={}",
            log.redact(query), unicode::graphemeCount(query), keystrokeCount, isKeystrokeMode,
            deletion.count);
    const bool isAltHeld = picker.isAltHeld();
    const auto polled = queryPoll ? std::optional(queryPoll->query()) : std::nullopt;
    close(shown);
    const auto inserted = textFor(item, query, isAltHeld);
    if (polled)
        insertWhenRead(inserted, *polled);
    else
        text.insert(inserted, deletion.count, deletion.expected);
}

/// What is inserted stays the entry that was highlighted; what is deleted is what the text holds by then.
void KeyboardMonitor::Implementation::insertWhenRead(const std::string& inserted, const PolledQuery& chosen) {
    std::erase_if(choices, [](const auto& choice) { return choice->isDone(); });
    const auto then = [this, inserted,
                       target = frontApplications.current()](const std::optional<Deletion>& deletion) {
        if (!deletion)
            text.leaveUntouched("what has been typed is not certain");
        else if (frontApplications.current() != target)
            text.leaveUntouched("another application has come to the front");
        else
            text.insert(inserted, deletion->count, deletion->expected, TextInserter::Otherwise::nothing);
    };
    choices.push_back(std::make_unique<ChoiceReading>(scheduler, reader, text, preferences.triggerCharacter(),
                                                      chosen, then));
}

/// Also records the choice, which counts even if the insertion fails.
std::string KeyboardMonitor::Implementation::textFor(const PickerItem& item, const std::string& query,
                                                     bool isAltHeld) {
    if (const auto special = std::get_if<SpecialEntry>(&item)) {
        auto picked = catalogue.pickRandom(special->id == "random-emoji");
        catalogue.recordUsage(std::string(specialPrefix) + special->id, query);
        return picked;
    }
    const auto& entry = std::get<EmojiEntry>(item);
    catalogue.recordUsage(entry.character, query);
    return textOf(entry, preferences.skinToneModifier(), isAltHeld);
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

bool KeyboardMonitor::isPanelVisible() const {
    return implementation_->state.isPanelVisible();
}

bool KeyboardMonitor::isPendingTrigger() const {
    return implementation_->state.isPendingTrigger();
}

} // namespace glyma
