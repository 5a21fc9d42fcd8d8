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

/// Whether it may still be done.
bool isOpen(const Accessibility::Result<void>& result) {
    return !result && result.error() == AccessibilityError::timedOut;
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
        log_.debug("insertViaAX: the text before the caret is not the typed text");
        return Outcome::otherText;
    }
    const auto selection = readSelectedRange(true);
    if (!selection)
        return Outcome::useClipboard;

    caret_ = selection->location;
    includeProposal(*selection);
    deletion_ = insertion::deletionRange(caret_, deleteUnits_);
    log_.debug("insertViaAX: caretLocation={}, deleteCount={}, deleteFrom={}, deleteLength={}", caret_,
               deleteUnits_, deletion_.location, deletion_.length);
    logSurroundings(caret_);
    if (deleteUnits_ > caret_) {
        log_.debug(
            "insertViaAccessibility: caretLocation ({}) < deleteCount ({}); delegating to clipboard path",
            caret_, deleteUnits_);
        return Outcome::useClipboard;
    }
    if (!accessibility_.isAttributeSettable(element_, attribute::selectedText))
        return replaceValue();
    return replaceSelection();
}

AccessibleInsertion::Outcome AccessibleInsertion::resolve() {
    isUntouched_ = false;
    const auto range = readSelectedRange();
    if (!range)
        return Outcome::uncertain;
    if (range->length > 0) {
        const auto selected =
            valueAs<std::string>(accessibility_.attributeValue(element_, attribute::selectedText));
        const bool isIntended = expected_ ? selected == expected_ : *range == deletion_;
        return isIntended ? Outcome::pasteOverSelection : Outcome::uncertain;
    }
    if (range->location == deletion_.location + static_cast<std::ptrdiff_t>(unicode::utf16Length(text_)) &&
        stands(range->location, text_))
        return Outcome::done;
    if (range->location == deletion_.location)
        return Outcome::pasteOverSelection;
    isUntouched_ = range->location == caret_ && (!expected_ || stands(caret_, *expected_));
    return Outcome::uncertain;
}

/// What is selected behind the typed text is a completion that the application proposes: the user's typing
/// would have replaced it.
void AccessibleInsertion::includeProposal(TextRange selection) {
    if (selection.length <= 0)
        return;
    const auto proposal =
        valueAs<std::string>(accessibility_.attributeValue(element_, attribute::selectedText));
    if (!proposal || static_cast<std::ptrdiff_t>(unicode::utf16Length(*proposal)) != selection.length)
        return;
    caret_ += selection.length;
    deleteUnits_ += selection.length;
    if (expected_)
        *expected_ += *proposal;
}

/// Whether that text ends there.
bool AccessibleInsertion::stands(std::ptrdiff_t end, const std::string& text) {
    const auto length = static_cast<std::ptrdiff_t>(unicode::utf16Length(text));
    return end >= length &&
           valueAs<std::string>(accessibility_.parameterizedValue(element_, attribute::stringForRange,
                                                                  TextRange{end - length, length})) == text;
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

Accessibility::Result<void> AccessibleInsertion::select(TextRange range) {
    return accessibility_.setAttributeValue(element_, attribute::selectedTextRange, range);
}

AccessibleInsertion::Outcome AccessibleInsertion::replaceValue() {
    if (!accessibility_.isAttributeSettable(element_, attribute::value))
        return Outcome::useClipboard;
    const auto value = valueAs<std::string>(accessibility_.attributeValue(element_, attribute::value));
    if (!value)
        return Outcome::useClipboard;
    const auto newValue = insertion::replaced(*value, deletion_, text_);
    if (!newValue)
        return Outcome::useClipboard;
    if (const auto set = accessibility_.setAttributeValue(element_, attribute::value, *newValue); !set)
        return isOpen(set) ? Outcome::uncertain : Outcome::useClipboard;
    static_cast<void>(
        select({deletion_.location + static_cast<std::ptrdiff_t>(unicode::utf16Length(text_)), 0}));
    return Outcome::done;
}

AccessibleInsertion::Outcome AccessibleInsertion::replaceSelection() {
    const auto selection = select(deletion_);
    if (isOpen(selection))
        return Outcome::uncertain;
    const bool selectionMade = selection.has_value();
    if (!selectionMade || deletion_.length == 0)
        return setSelectedText(selectionMade);

    const auto selected = readSelectedText(deletion_.length);
    if (log_.debugEnabled())
        log_.debug("insertViaAX: selected text = {} ({} UTF-16 units, expected {})",
                   log_.redactQuoted(selected), unicode::utf16Length(selected), deleteUnits_);
    // An application that took the request and selected nothing looks like one that does not tell what is
    // selected; its range tells them apart.
    if (const auto range = readSelectedRange(); selected.empty() && range && range->length == 0)
        return abandonSelection(false);
    switch (insertion::judge(selected, expected_, deleteUnits_, deletion_.length)) {
    case insertion::Selection::good:
        return setSelectedText(selectionMade);
    case insertion::Selection::mismatched:
        if (log_.debugEnabled())
            log_.debug("insertViaAX: selection is not the intended text (expected {})",
                       log_.redactQuoted(*expected_));
        return abandonSelection(true);
    case insertion::Selection::wrong:
        return abandonSelection(true);
    case insertion::Selection::unusable:
        break;
    }
    return abandonSelection(false);
}

AccessibleInsertion::Outcome AccessibleInsertion::setSelectedText(bool selectionMade) {
    const auto set = accessibility_.setAttributeValue(element_, attribute::selectedText, text_);
    if (isOpen(set))
        return Outcome::uncertain;
    if (set) {
        if (!selectionMade || !selectionStillActive())
            return Outcome::done;
        log_.debug(
            "insertViaAX: Set reported success but selection did not collapse; re-selecting and pasting");
        static_cast<void>(select(deletion_));
        return Outcome::pasteOverSelection;
    }
    if (!selectionMade)
        return Outcome::useClipboard;
    log_.debug("insertViaAccessibility: Set failed with selection active; pasting over selection");
    return Outcome::pasteOverSelection;
}

AccessibleInsertion::Outcome AccessibleInsertion::abandonSelection(bool isWrong) {
    log_.debug("insertViaAX: selection unusable; collapsing and using clipboard");
    if (collapseSelection(caret_))
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
