#pragma once

#include "platform/accessibility.h"
#include "platform/scheduler.h"
#include "preferences/log.h"

#include <cstddef>
#include <optional>
#include <string>

namespace glyma {

/// One attempt to replace the typed text through the element that has the focus. Many applications report
/// success while doing something else, so that every step is verified; what accessibility cannot finish is
/// handed back. Main thread, which it blocks for at most 0.28 s beyond the application's own answers.
class AccessibleInsertion {
public:
    enum class Outcome {
        done,
        /// The text to replace is selected; paste.
        pasteOverSelection,
        /// Nothing was changed; use the keyboard and the clipboard.
        useClipboard,
        /// Nothing was changed: something else than the typed text stands before the caret.
        otherText,
        /// Something else is selected and stays so: nothing can be inserted without destroying it.
        refused,
        /// The application did not say in time whether it did what it was told, and may still do it: any
        /// other step now could delete or insert twice. Ask resolve() later.
        uncertain,
    };

    /// \param deleteCount  grapheme clusters before the caret.
    AccessibleInsertion(Accessibility& accessibility, Scheduler& scheduler, Log& log, std::string text,
                        std::ptrdiff_t deleteCount, std::optional<std::string> expected);

    Outcome run();
    /// What has become of an uncertain step, as far as the application tells by now.
    /// \return uncertain while it does not, or while the text is as it was before: a selection may still be
    /// made.
    Outcome resolve();
    /// Whether the text is as it was before, as resolve() saw it last.
    bool isUntouched() const { return isUntouched_; }

private:
    bool typedTextHasArrived();
    void includeProposal(TextRange selection);
    std::optional<TextRange> readSelectedRange(bool logsFailure = false);
    Accessibility::Result<void> select(TextRange range);
    std::string readSelectedText(std::ptrdiff_t minimumUnits);
    bool collapseSelection(std::ptrdiff_t location);
    bool selectionStillActive();
    void logSurroundings(std::ptrdiff_t caret);
    bool stands(std::ptrdiff_t end, const std::string& text);
    Outcome replaceValue();
    Outcome replaceSelection();
    Outcome setSelectedText(bool selectionMade);
    Outcome abandonSelection(bool isWrong);

    Accessibility& accessibility_;
    Scheduler& scheduler_;
    Log& log_;
    ElementReference element_;
    std::string text_;
    std::optional<std::string> expected_;
    std::ptrdiff_t deleteUnits_;
    std::ptrdiff_t caret_ = 0;
    TextRange deletion_;
    bool isUntouched_ = false;
};

} // namespace glyma
