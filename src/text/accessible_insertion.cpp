#include "text/accessible_insertion.h"

#include "text/insertion_plan.h"
#include "unicode/text.h"

#include <utility>

namespace glyma {

namespace {

constexpr int selectionReads = 5;
constexpr int collapseChecks = 5;
constexpr int arrivalChecks = 6;
constexpr Milliseconds betweenReads{20};

template<typename Value, typename Result>
std::optional<Value> valueAs(const Result& result) {
    if (!result)
        return std::nullopt;
    const auto* value = std::get_if<Value>(&*result);
    return value ? std::optional(*value) : std::nullopt;
}

} // namespace

AccessibleInsertion::AccessibleInsertion(Accessibility& accessibility, Scheduler& scheduler, Log& log,
                                         std::string text, std::ptrdiff_t deleteCount,
                                         std::optional<std::string> expected)
    : accessibility_(accessibility)
    , scheduler_(scheduler)
    , log_(log)
    , text_(std::move(text))
    , expected_(std::move(expected))
    , deleteUnits_(insertion::unitsToDelete(deleteCount, expected_)) {}

AccessibleInsertion::Outcome AccessibleInsertion::run() {
    element_ = valueAs<ElementReference>(
                   accessibility_.attributeValue(accessibility_.systemWide(), attribute::focusedElement))
                   .value_or(nullptr);
    if (!element_)
        return Outcome::useClipboard;
    if (!typedTextHasArrived()) {
        log_.debug("insertViaAX: the text before the caret is not the typed text; using clipboard");
        return Outcome::useClipboard;
    }
    const auto selection = readSelectedRange(true);
    if (!selection)
        return Outcome::useClipboard;

    const auto caret = selection->location;
    const auto deletion = insertion::deletionRange(caret, deleteUnits_);
    log_.debug("insertViaAX: caretLocation={}, deleteCount={}, deleteFrom={}, deleteLength={}", caret,
               deleteUnits_, deletion.location, deletion.length);
    logSurroundings(caret);
    if (deleteUnits_ > caret) {
        log_.debug(
            "insertViaAccessibility: caretLocation ({}) < deleteCount ({}); delegating to clipboard path",
            caret, deleteUnits_);
        return Outcome::useClipboard;
    }
    if (!accessibility_.isAttributeSettable(element_, attribute::selectedText))
        return replaceValue(deletion);
    return replaceSelection(deletion, caret);
}

/// Applications apply keys, and tell of it, some time after the tap has heard them (Firefox under load:
/// tenths of a second). Ranges counted in a text that is still changing would select something else, and
/// putting the caret back would put it elsewhere. Keys, unlike ranges, are applied in order. \return false
/// when the text before the caret can be read and is still another one after 0.1 s.
bool AccessibleInsertion::typedTextHasArrived() {
    if (!expected_)
        return true;
    for (int check = 0; check < arrivalChecks; ++check) {
        if (check > 0)
            scheduler_.sleep(betweenReads);
        const auto range = readSelectedRange();
        if (!range)
            return true;
        if (range->location < deleteUnits_)
            continue;
        const auto before = valueAs<std::string>(accessibility_.parameterizedValue(
            element_, attribute::stringForRange, TextRange{range->location - deleteUnits_, deleteUnits_}));
        if (!before || *before == *expected_)
            return true;
    }
    return readSelectedRange().value_or(TextRange{}).location < deleteUnits_;
}

std::optional<TextRange> AccessibleInsertion::readSelectedRange(bool logsFailure) {
    const auto answer = accessibility_.attributeValue(element_, attribute::selectedTextRange);
    if (!answer && logsFailure)
        log_.debug(
            "insertViaAccessibility: kAXSelectedTextRangeAttribute failed ({}); delegating to clipboard path",
            describe(answer.error()));
    return valueAs<TextRange>(answer);
}

void AccessibleInsertion::logSurroundings(std::ptrdiff_t caret) {
    if (deleteUnits_ <= 0)
        return;
    const auto range = insertion::surroundings(caret, deleteUnits_);
    const auto text =
        valueAs<std::string>(accessibility_.parameterizedValue(element_, attribute::stringForRange, range));
    if (text && log_.debugEnabled())
        log_.debug("insertViaAX: text around deletion zone [{}..{}]: {}", range.location,
                   range.location + range.length, log_.redactQuoted(*text));
}

bool AccessibleInsertion::select(TextRange range) {
    return accessibility_.setAttributeValue(element_, attribute::selectedTextRange, range).has_value();
}

AccessibleInsertion::Outcome AccessibleInsertion::replaceValue(TextRange deletion) {
    if (!accessibility_.isAttributeSettable(element_, attribute::value))
        return Outcome::useClipboard;
    const auto value = valueAs<std::string>(accessibility_.attributeValue(element_, attribute::value));
    if (!value)
        return Outcome::useClipboard;
    const auto newValue = insertion::replaced(*value, deletion, text_);
    if (!newValue || !accessibility_.setAttributeValue(element_, attribute::value, *newValue))
        return Outcome::useClipboard;
    select({deletion.location + static_cast<std::ptrdiff_t>(unicode::utf16Length(text_)), 0});
    return Outcome::done;
}

AccessibleInsertion::Outcome AccessibleInsertion::replaceSelection(TextRange deletion, std::ptrdiff_t caret) {
    const bool selectionMade = select(deletion);
    if (!selectionMade || deletion.length == 0)
        return setSelectedText(deletion, selectionMade);

    const auto selected = readSelectedText(deletion.length);
    if (log_.debugEnabled())
        log_.debug("insertViaAX: selected text = {} ({} UTF-16 units, expected {})",
                   log_.redactQuoted(selected), unicode::utf16Length(selected), deleteUnits_);
    // An application that took the request and selected nothing looks like one that does not tell what is
    // selected; its range tells them apart.
    if (const auto range = readSelectedRange(); selected.empty() && range && range->length == 0)
        return abandonSelection(caret, false);
    switch (insertion::judge(selected, expected_, deleteUnits_, deletion.length)) {
    case insertion::Selection::good:
        return setSelectedText(deletion, selectionMade);
    case insertion::Selection::mismatched:
        if (log_.debugEnabled())
            log_.debug("insertViaAX: selection is not the intended text (expected {})",
                       log_.redactQuoted(*expected_));
        return abandonSelection(caret, true);
    case insertion::Selection::wrong:
        return abandonSelection(caret, true);
    case insertion::Selection::unusable:
        break;
    }
    return abandonSelection(caret, false);
}

AccessibleInsertion::Outcome AccessibleInsertion::setSelectedText(TextRange deletion, bool selectionMade) {
    if (accessibility_.setAttributeValue(element_, attribute::selectedText, text_)) {
        if (!selectionMade || !selectionStillActive())
            return Outcome::done;
        log_.debug(
            "insertViaAX: Set reported success but selection did not collapse; re-selecting and pasting");
        select(deletion);
        return Outcome::pasteOverSelection;
    }
    if (!selectionMade)
        return Outcome::useClipboard;
    log_.debug("insertViaAccessibility: Set failed with selection active; pasting over selection");
    return Outcome::pasteOverSelection;
}

AccessibleInsertion::Outcome AccessibleInsertion::abandonSelection(std::ptrdiff_t caret, bool isWrong) {
    log_.debug("insertViaAX: selection unusable; collapsing and using clipboard");
    if (collapseSelection(caret))
        return Outcome::useClipboard;
    if (!isWrong) {
        log_.debug("insertViaAX: collapse not confirmed; pasting over the selection instead");
        return Outcome::pasteOverSelection;
    }
    log_.debug("insertViaAX: collapse not confirmed and the selection is wrong; leaving the text untouched");
    return Outcome::refused;
}

std::string AccessibleInsertion::readSelectedText(std::ptrdiff_t minimumUnits) {
    std::string last;
    for (int read = 0; read < selectionReads; ++read) {
        if (read > 0)
            scheduler_.sleep(betweenReads);
        auto text = valueAs<std::string>(accessibility_.attributeValue(element_, attribute::selectedText));
        if (!text)
            continue;
        last = std::move(*text);
        if (static_cast<std::ptrdiff_t>(unicode::utf16Length(last)) >= minimumUnits)
            break;
    }
    return last;
}

bool AccessibleInsertion::collapseSelection(std::ptrdiff_t location) {
    if (!select({location, 0}))
        return false;
    for (int check = 0; check < collapseChecks; ++check) {
        scheduler_.sleep(betweenReads);
        if (const auto range = readSelectedRange(); range && range->length == 0)
            return true;
    }
    return false;
}

bool AccessibleInsertion::selectionStillActive() {
    const auto range = readSelectedRange();
    if (!range || range->length <= 0)
        return false;
    const auto selection =
        valueAs<std::string>(accessibility_.attributeValue(element_, attribute::selectedText));
    if (!selection || *selection == text_)
        return false;
    if (log_.debugEnabled())
        log_.debug("insertViaAX: post-Set selection = {} at {{{}, {}}}", log_.redactQuoted(*selection),
                   range->location, range->length);
    return true;
}

} // namespace glyma
