#include "monitor/monitor_implementation.h"

namespace glyma {

namespace {

/// Lets the target move its caret.
constexpr Milliseconds clickRecheckDelay{50};
/// Lets the window manager put the window where it stays.
constexpr Milliseconds finalFollowDelay{100};

} // namespace

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

} // namespace glyma
