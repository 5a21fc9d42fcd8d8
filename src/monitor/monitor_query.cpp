#include "monitor/monitor_implementation.h"

#include <array>
#include <utility>

namespace glyma {

namespace {

/// Lets the target move its caret.
constexpr Milliseconds clickRecheckDelay{50};
/// Lets the window manager put the window where it stays: it moves it after it has heard of the pointer,
/// and we may hear of that first.
constexpr Milliseconds finalFollowDelay{100};
constexpr int finalFollows = 3;
/// When to look again for the element of an application that did not tell it when the picker was shown.
constexpr std::array lookDelays = {Milliseconds(100), Milliseconds(200), Milliseconds(400),
                                   Milliseconds(800)};

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

/// An application that has just been started may tell its focused element only now. Until the next key
/// nothing is read: the query is what the keys have typed either way.
void KeyboardMonitor::Implementation::pollWhenFound(Showing showing, std::size_t attempt) {
    if (attempt == lookDelays.size())
        return;
    const auto judge = [this, showing, attempt](bool isFound) {
        if (shown != showing || queryPoll)
            return;
        if (!isFound)
            return pollWhenFound(showing, attempt + 1);
        log.debug("Glyma: [AX poll] the focused element has been found after all");
        poll(showing, typedKeys);
        state.setKeystrokeMode(showing, false);
        picker.setIsKeystrokeMode(false);
        if (const auto caret = text.caretBounds())
            showAt(*caret);
    };
    delayed.after(lookDelays.at(attempt), [this, showing, judge] {
        if (shown == showing)
            reader.ask(
                [&text = text] {
                    text.cacheSourceFocusedElement();
                    return text.focusedElementReportsSelection();
                },
                judge);
    });
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
        keepFollowing();
        return delayed.after(finalFollowDelay, [this] { targetWindow.followTargetWindow(true); });
    case MouseEvent::leftDragged:
        return keepFollowing();
    case MouseEvent::leftDown:
    case MouseEvent::otherDown:
        return delayed.after(clickRecheckDelay, [this] { recheckAfterClick(); });
    }
}

void KeyboardMonitor::Implementation::keepFollowing() {
    targetWindow.followTargetWindow(false);
    if (std::exchange(followsLeft, finalFollows) == 0)
        followOnceMore();
}

void KeyboardMonitor::Implementation::followOnceMore() {
    delayed.after(finalFollowDelay, [this] {
        targetWindow.followTargetWindow(false);
        if (--followsLeft > 0)
            followOnceMore();
    });
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
