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
        /// Something else is selected and stays so: nothing can be inserted without destroying it.
        refused,
    };

    /// \param deleteCount  grapheme clusters before the caret.
    AccessibleInsertion(Accessibility& accessibility, Scheduler& scheduler, Log& log, std::string text,
                        std::ptrdiff_t deleteCount, std::optional<std::string> expected);

    Outcome run();

private:
    bool typedTextHasArrived();
    std::optional<TextRange> readSelectedRange(bool logsFailure = false);
    bool select(TextRange range);
    std::string readSelectedText(std::ptrdiff_t minimumUnits);
    bool collapseSelection(std::ptrdiff_t location);
    bool selectionStillActive();
    void logSurroundings(std::ptrdiff_t caret);
    Outcome replaceValue(TextRange deletion);
    Outcome replaceSelection(TextRange deletion, std::ptrdiff_t caret);
    Outcome setSelectedText(TextRange deletion, bool selectionMade);
    Outcome abandonSelection(std::ptrdiff_t caret, bool isWrong);

    Accessibility& accessibility_;
    Scheduler& scheduler_;
    Log& log_;
    ElementReference element_;
    std::string text_;
    std::optional<std::string> expected_;
    std::ptrdiff_t deleteUnits_;
};

} // namespace glyma
