#include "text/text_inserter.h"
#include "unicode/text.h"

#include <chrono>
#include <utility>
#include <vector>

namespace glyma {

namespace {

/// Lets the picker's own key handling finish.
constexpr Milliseconds beforeInsertion{50};
/// Lets the target process one deletion.
constexpr Milliseconds forEachBackspace{20};
/// How long an application may leave open what it has done, and how often it must show the text as it was
/// before for that to be believed.
constexpr Milliseconds betweenResolveAttempts{100};
constexpr int mostResolveAttempts = 35;
constexpr int enoughTimesUntouched = 5;
/// Lets the target read what is pasted.
constexpr Milliseconds beforeGivingBack{500};
/// How often to look whether the target has asked for the text, and what it takes to put it in then: keys
/// that come before it stand before it.
constexpr Milliseconds betweenLooks{5};
constexpr Milliseconds forInserting{50};

} // namespace

void TextInserter::insert(const std::string& text, std::ptrdiff_t deleteCharsBefore,
                          const std::optional<std::string>& expected, std::shared_ptr<TypingHold> hold,
                          Otherwise otherwise) {
    auto& log = services_.log;
    if (log.debugEnabled())
        log.debug("insert: deleteCharsBefore={}, text=\"{}\" ({} chars, {} UTF-16)", deleteCharsBefore,
                  log.redact(unicode::firstGraphemes(text, 20)), unicode::graphemeCount(text),
                  unicode::utf16Length(text));
    const auto insertion =
        std::make_shared<Insertion>(text, deleteCharsBefore, services_.frontApplications.current(),
                                    AccessibleInsertion(services_.accessibility, services_.scheduler,
                                                        services_.log, text, deleteCharsBefore, expected),
                                    std::move(hold), otherwise);
    insertion_ = insertion;
    jobs_.after(beforeInsertion, [this, insertion] {
        if (mayGoOn(*insertion) && !insertViaAccessibility(insertion))
            insertViaClipboard(insertion);
    });
}

bool TextInserter::isInserting() const {
    return !insertion_.expired() || clipboardLoan_.isAwaited() || (primaryLoan_ && primaryLoan_->isAwaited());
}

/// What stands before the caret of another application is not ours to delete.
bool TextInserter::isStillInFront(const FrontApplication& target) {
    if (services_.frontApplications.current() == target)
        return true;
    leaveUntouched("another application has come to the front");
    return false;
}

/// Nor is what stands there after the user's keys could not be held any longer.
bool TextInserter::mayGoOn(const Insertion& insertion) {
    if (!isStillInFront(insertion.target))
        return false;
    if (!insertion.hold || insertion.hold->isOn())
        return true;
    leaveUntouched("it has taken so long that the user types on");
    return false;
}

void TextInserter::leaveUntouched(std::string_view why) {
    services_.log.debug("insert: {}; leaving the text untouched", why);
    services_.bell.ring();
}

/// \return false when the text still has to be inserted through the clipboard.
bool TextInserter::insertViaAccessibility(const InsertionReference& insertion) {
    return act(insertion, insertion->accessible.run());
}

bool TextInserter::act(const InsertionReference& insertion, AccessibleInsertion::Outcome outcome) {
    switch (outcome) {
    case AccessibleInsertion::Outcome::done:
        break;
    case AccessibleInsertion::Outcome::pasteOverSelection:
        pasteOverSelection(insertion);
        break;
    case AccessibleInsertion::Outcome::refused:
        services_.bell.ring();
        break;
    case AccessibleInsertion::Outcome::uncertain:
        resolveLater(insertion);
        break;
    case AccessibleInsertion::Outcome::otherText:
        if (insertion->otherwise == Otherwise::keys)
            return false;
        leaveUntouched("the text before the caret is another one by now");
        break;
    case AccessibleInsertion::Outcome::useClipboard:
        return false;
    }
    return true;
}

void TextInserter::resolveLater(const InsertionReference& insertion) {
    jobs_.after(betweenResolveAttempts, [this, insertion] { resolve(insertion); });
}

void TextInserter::resolve(const InsertionReference& insertion) {
    if (!mayGoOn(*insertion))
        return;
    const auto outcome = insertion->accessible.resolve();
    insertion->timesUntouched = insertion->accessible.isUntouched() ? insertion->timesUntouched + 1 : 0;
    if (insertion->timesUntouched == enoughTimesUntouched)
        insertViaClipboard(insertion);
    else if (++insertion->resolveAttempts == mostResolveAttempts)
        leaveUntouched("the application does not say what it has done");
    else
        act(insertion, outcome);
}

void TextInserter::insertViaClipboard(const InsertionReference& insertion) {
    if (!mayGoOn(*insertion))
        return;
    const auto deleteCount = insertion->deleteCount;
    auto& log = services_.log;
    if (log.debugEnabled())
        log.debug("insertViaClipboard: deleteCount={} text=\"{}\"", deleteCount,
                  log.redact(unicode::firstGraphemes(insertion->text, 8)));
    const auto chord = pasteChord();
    borrowClipboards(chord);

    log.debug("insertViaClipboard: sending {} backspace(s)", deleteCount);
    const std::vector<KeyChord> backspaces(static_cast<std::size_t>(deleteCount), {keycode::backspace, 0});
    if (insertion->hold) {
        if (!insertion->hold->inject(backspaces) && !mayGoOn(*insertion))
            return;
    } else {
        services_.keys.inject(backspaces);
    }

    const auto delay = deleteCount * forEachBackspace;
    log.debug("insertViaClipboard: scheduling paste after {:.3f}s",
              std::chrono::duration<double>(delay).count());
    // What has been deleted is replaced although typing may not be held so long.
    jobs_.after(delay, [this, insertion, chord] {
        if (!isStillInFront(insertion->target))
            return;
        services_.log.debug("insertViaClipboard: sending Cmd+V");
        paste(insertion, chord);
    });
}

void TextInserter::pasteOverSelection(const InsertionReference& insertion) {
    if (!mayGoOn(*insertion))
        return;
    const auto chord = pasteChord();
    borrowClipboards(chord);
    paste(insertion, chord);
}

KeyChord TextInserter::pasteChord() const {
    return services_.preferences.pasteChord(services_.frontApplications.current().identifier.value_or(""));
}

void TextInserter::borrowClipboards(const KeyChord& chord) {
    clipboardLoan_.borrow();
    // Terminals paste the last selection with Shift+Insert, other applications the general clipboard. The
    // last selection is left alone otherwise: taking it makes applications drop the selection that we paste
    // over.
    if (primaryLoan_ && chord.keyCode == keycode::insert)
        primaryLoan_->borrow();
}

void TextInserter::paste(const InsertionReference& insertion, const KeyChord& chord) {
    const bool lendsPrimary = primaryLoan_ && chord.keyCode == keycode::insert;
    // Either is enough, and still is when that one has been given back.
    const auto isTaken = [this, lendsPrimary, taken = std::make_shared<bool>(false)] {
        *taken = *taken || services_.clipboard.isTransientTextTaken() ||
                 (lendsPrimary && services_.primarySelection->isTransientTextTaken());
        return *taken;
    };
    clipboardLoan_.lend(insertion->text, beforeGivingBack, isTaken);
    if (lendsPrimary)
        primaryLoan_->lend(insertion->text, beforeGivingBack, isTaken);
    if (insertion->hold && insertion->hold->isOn() && insertion->hold->inject({&chord, 1}))
        return releaseWhenTaken(insertion, isTaken);
    if (!insertion->hold || !insertion->hold->isOn())
        services_.keys.inject({&chord, 1});
}

void TextInserter::releaseWhenTaken(const InsertionReference& insertion,
                                    const std::function<bool()>& isTaken) {
    if (isTaken())
        jobs_.after(forInserting, [insertion] { insertion->hold->release(); });
    else if (insertion->hold->isOn())
        jobs_.after(betweenLooks, [this, insertion, isTaken] { releaseWhenTaken(insertion, isTaken); });
}

void TextInserter::giveBack(std::span<const KeyChord> keys) {
    services_.keys.inject(keys);
}

} // namespace glyma
