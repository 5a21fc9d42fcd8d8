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
/// Lets the target read what is pasted.
constexpr Milliseconds beforeGivingBack{500};

} // namespace

void TextInserter::insert(const std::string& text, std::ptrdiff_t deleteCharsBefore,
                          const std::optional<std::string>& expected) {
    auto& log = services_.log;
    if (log.debugEnabled())
        log.debug("insert: deleteCharsBefore={}, text=\"{}\" ({} chars, {} UTF-16)", deleteCharsBefore,
                  log.redact(unicode::firstGraphemes(text, 20)), unicode::graphemeCount(text),
                  unicode::utf16Length(text));
    const auto target = services_.frontApplications.current();
    jobs_.after(beforeInsertion, [this, target, text, deleteCharsBefore, expected] {
        // What stands before the caret of another application is not ours to delete.
        if (services_.frontApplications.current() != target) {
            services_.log.debug(
                "insert: another application has come to the front; leaving the text untouched");
            services_.bell.ring();
            return;
        }
        if (!insertViaAccessibility(text, deleteCharsBefore, expected))
            insertViaClipboard(text, deleteCharsBefore);
    });
}

/// \return false when the text still has to be inserted through the clipboard.
bool TextInserter::insertViaAccessibility(const std::string& text, std::ptrdiff_t deleteCount,
                                          const std::optional<std::string>& expected) {
    AccessibleInsertion insertion(services_.accessibility, services_.scheduler, services_.log, text,
                                  deleteCount, expected);
    switch (insertion.run()) {
    case AccessibleInsertion::Outcome::done:
        break;
    case AccessibleInsertion::Outcome::pasteOverSelection:
        pasteOverSelection(text);
        break;
    case AccessibleInsertion::Outcome::refused:
        services_.bell.ring();
        break;
    case AccessibleInsertion::Outcome::useClipboard:
        return false;
    }
    return true;
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
        if (services_.frontApplications.current() != target) {
            services_.log.debug("insertViaClipboard: another application has come to the front; not pasting");
            services_.bell.ring();
            return;
        }
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
    clipboardLoan_.lend(text, beforeGivingBack);
    if (primaryLoan_ && chord.keyCode == keycode::insert)
        primaryLoan_->lend(text, beforeGivingBack);
    services_.keys.inject({&chord, 1});
}

} // namespace glyma
