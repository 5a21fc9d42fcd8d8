#include "monitor/monitor_implementation.h"
#include "monitor/website_exclusion.h"

#include <utility>

namespace glyma {

namespace {

/// How soon and how often a browser that has not said which page it shows is asked again.
constexpr Milliseconds answerInterval{50};
constexpr int answerAttempts = 20;
constexpr Milliseconds secondLookDelay{80};

} // namespace

/// On the main thread: an application that was never asked before can take tenths of a second to tell its
/// focused element, and keys heard meanwhile would reach it before the keys they open the picker for are
/// claimed.
void KeyboardMonitor::Implementation::rememberSource(TriggerNumber trigger) {
    post([trigger, front = state.front()](Implementation& self) {
        self.text.setSourceAppPID(front.process);
        self.text.cacheSourceFocusedElement();
        self.permit({trigger, front}, isExcludedWebsite(front.identifier, self.text, self.preferences));
    });
}

bool KeyboardMonitor::Implementation::hasLeft(const FrontApplication& front) const {
    const auto current = frontApplications.current();
    return current.process != 0 && front.process != 0 && current.process != front.process &&
           current.identifier != ownIdentifier;
}

/// Keys heard meanwhile may already have opened the picker for this trigger: that showing is behind us in the
/// queue, so that a picker which may not open is never seen.
void KeyboardMonitor::Implementation::permit(TriggerQuestion question, std::optional<bool> isExcluded) {
    const bool left = hasLeft(question.front);
    if (!left && !isExcluded && question.attempts < answerAttempts) {
        isWaitingForAnswer = true;
        return delayed.after(answerInterval, [this, question] { askAgain(question); });
    }
    isTriggerRefused = false;
    if (left)
        refuse(question.trigger, true);
    else if (isExcluded.value_or(true))
        refuse(question.trigger, false);
    else if (!question.front.identifier || !preferences.isBrowser(*question.front.identifier))
        state.allow(question.trigger);
    // A browser's page is looked at once more when the picker is about to be seen.
    runWhatWaits();
}

void KeyboardMonitor::Implementation::askAgain(TriggerQuestion question) {
    ++question.attempts;
    reader.ask(
        [&text = text] {
            text.cacheSourceFocusedElement();
            return text.focusedPage();
        },
        [this, question](const FocusedPage& page) {
            permit(question, isExcludedPage(page, preferences.excludedWebsites()));
        });
}

void KeyboardMonitor::Implementation::refuse(TriggerNumber trigger, bool hasLeft) {
    isTriggerRefused = true;
    log.debug("Glyma: [tap] trigger ignored: {}",
              hasLeft ? "the user has left the application" : "not in a page, or in one of an excluded site");
    const auto taken = state.refuse(trigger);
    if (!hasLeft && !taken.empty())
        text.giveBack(taken);
}

void KeyboardMonitor::Implementation::run(std::function<void(Implementation&)> action) {
    if (isWaitingForAnswer)
        waiting.push_back(std::move(action));
    else
        action(*this);
}

void KeyboardMonitor::Implementation::runWhatWaits() {
    isWaitingForAnswer = false;
    for (auto& action : std::exchange(waiting, {}))
        run(std::move(action));
}

/// A browser reports late that its focus has left the page: Control+L and a trigger, typed fast.
void KeyboardMonitor::Implementation::focusMoved() {
    const auto front = frontApplications.current();
    if (shown != 0 && front.identifier && preferences.isBrowser(*front.identifier))
        closeOutsidePages(shown, false);
}

/// Firefox tells for a moment that its window has the focus itself when its user has dragged it.
void KeyboardMonitor::Implementation::closeOutsidePages(Showing showing, bool isSecondLook) {
    reader.ask(
        [&text = text] {
            text.cacheSourceFocusedElement();
            return text.focusedPage();
        },
        [this, showing, isSecondLook](const FocusedPage& page) {
            if (shown != showing || !isExcludedPage(page, preferences.excludedWebsites()).value_or(false))
                return;
            if (isSecondLook)
                return close(showing);
            delayed.after(secondLookDelay, [this, showing] { closeOutsidePages(showing, true); });
        });
}

} // namespace glyma
