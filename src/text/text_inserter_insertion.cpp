#include "text/text_inserter.h"
#include "unicode/text.h"

#include <chrono>
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

} // namespace

void TextInserter::insert(const std::string& text, std::ptrdiff_t deleteCharsBefore,
                          const std::optional<std::string>& expected, Otherwise otherwise) {
    auto& log = services_.log;
    if (log.debugEnabled())
        log.debug("insert: deleteCharsBefore={}, text=\"{}\" ({} chars, {} UTF-16)", deleteCharsBefore,
                  log.redact(unicode::firstGraphemes(text, 20)), unicode::graphemeCount(text),
                  unicode::utf16Length(text));
    const auto insertion =
        std::make_shared<Insertion>(text, deleteCharsBefore, services_.frontApplications.current(),
                                    AccessibleInsertion(services_.accessibility, services_.scheduler,
                                                        services_.log, text, deleteCharsBefore, expected),
                                    otherwise);
    jobs_.after(beforeInsertion, [this, insertion] {
        if (isStillInFront(insertion->target) && !insertViaAccessibility(insertion))
            insertViaClipboard(insertion->text, insertion->deleteCount);
    });
}

/// What stands before the caret of another application is not ours to delete.
bool TextInserter::isStillInFront(const FrontApplication& target) {
    if (services_.frontApplications.current() == target)
        return true;
    leaveUntouched("another application has come to the front");
    return false;
}

void TextInserter::leaveUntouched(std::string_view why) {
    services_.log.debug("insert: {}; leaving the text untouched", why);
    services_.bell.ring();
}

/// \return false when the text still has to be inserted through the clipboard.
bool TextInserter::insertViaAccessibility(const std::shared_ptr<Insertion>& insertion) {
    return act(insertion, insertion->accessible.run());
}

bool TextInserter::act(const std::shared_ptr<Insertion>& insertion, AccessibleInsertion::Outcome outcome) {
    switch (outcome) {
    case AccessibleInsertion::Outcome::done:
        break;
    case AccessibleInsertion::Outcome::pasteOverSelection:
        pasteOverSelection(insertion->text);
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

void TextInserter::resolveLater(const std::shared_ptr<Insertion>& insertion) {
    jobs_.after(betweenResolveAttempts, [this, insertion] { resolve(insertion); });
}

void TextInserter::resolve(const std::shared_ptr<Insertion>& insertion) {
    if (!isStillInFront(insertion->target))
        return;
    const auto outcome = insertion->accessible.resolve();
    insertion->timesUntouched = insertion->accessible.isUntouched() ? insertion->timesUntouched + 1 : 0;
    if (insertion->timesUntouched == enoughTimesUntouched)
        insertViaClipboard(insertion->text, insertion->deleteCount);
    else if (++insertion->resolveAttempts == mostResolveAttempts)
        leaveUntouched("the application does not say what it has done");
    else
        act(insertion, outcome);
}

void TextInserter::insertViaClipboard(const std::string& text, std::ptrdiff_t deleteCount) {
    auto& log = services_.log;
    if (log.debugEnabled())
        log.debug("insertViaClipboard: deleteCount={} text=\"{}\"", deleteCount,
                  log.redact(unicode::firstGraphemes(text, 8)));
    const auto chord = pasteChord();
    borrowClipboards(chord);

    log.debug("insertViaClipboard: sending {} backspace(s)", deleteCount);
    const std::vector<KeyChord> backspaces(static_cast<std::size_t>(deleteCount), {keycode::backspace, 0});
    services_.keys.inject(backspaces);

    const auto delay = deleteCount * forEachBackspace;
    log.debug("insertViaClipboard: scheduling paste after {:.3f}s",
              std::chrono::duration<double>(delay).count());
    const auto target = services_.frontApplications.current();
    jobs_.after(delay, [this, target, text, chord] {
        if (!isStillInFront(target))
            return;
        services_.log.debug("insertViaClipboard: sending Cmd+V");
        paste(text, chord);
    });
}

void TextInserter::pasteOverSelection(const std::string& text) {
    const auto chord = pasteChord();
    borrowClipboards(chord);
    paste(text, chord);
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

void TextInserter::paste(const std::string& text, const KeyChord& chord) {
    const bool lendsPrimary = primaryLoan_ && chord.keyCode == keycode::insert;
    // Either is enough, and still is when that one has been given back.
    const auto isTaken = [this, lendsPrimary, taken = std::make_shared<bool>(false)] {
        *taken = *taken || services_.clipboard.isTransientTextTaken() ||
                 (lendsPrimary && services_.primarySelection->isTransientTextTaken());
        return *taken;
    };
    clipboardLoan_.lend(text, beforeGivingBack, isTaken);
    if (lendsPrimary)
        primaryLoan_->lend(text, beforeGivingBack, isTaken);
    services_.keys.inject({&chord, 1});
}

} // namespace glyma
