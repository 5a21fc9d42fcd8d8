#pragma once

#include "platform/accessibility.h"
#include "platform/clipboard.h"
#include "platform/front_application.h"
#include "platform/key_injector.h"
#include "platform/scheduler.h"
#include "platform/screens.h"
#include "platform/typing_hold.h"
#include "preferences/log.h"
#include "preferences/user_preferences.h"
#include "text/accessible_insertion.h"
#include "text/clipboard_loan.h"
#include "text/delayed_jobs.h"

#include <atomic>
#include <cstddef>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <sys/types.h>

namespace glyma {

struct TextServices {
    Scheduler& scheduler;
    Accessibility& accessibility;
    Clipboard& clipboard;
    KeyInjector& keys;
    FrontApplicationTracker& frontApplications;
    Screens& screens;
    Bell& bell;
    const UserPreferences& preferences;
    Log& log;
    /// What Shift+Insert pastes in terminals; null where the desktop has nothing like it.
    Clipboard* primarySelection = nullptr;
};

/// Where an element is, seen from the pages of a browser.
struct FocusedPage {
    enum class Place {
        inside,     ///< of a page
        outside,    ///< of all pages, though the window shows one
        unreadable, ///< the window has no page that can be read
        unanswered, ///< the application has not said, as one that has just been started may not yet
    };
    Place place = Place::unanswered;
    /// Of the page, without "www."; empty when it has none.
    std::string host;
    bool operator==(const FocusedPage&) const = default;
};

/// Reads and changes the text of other applications through one element: the one that had the focus when the
/// trigger was typed. Finding and caching it may be called from the tap thread as well as the main thread,
/// reading the text before the caret from any; everything else belongs to the main thread.
class TextInserter {
public:
    enum class Otherwise {
        keys,    ///< backspaces: the count is that of keys, which the application applies in order
        nothing, ///< the count is that of the text
    };

    explicit TextInserter(TextServices services);
    ~TextInserter();

    // Focused element and caret
    void setSourceAppPID(pid_t process);
    pid_t sourceAppPID() const;
    void cacheSourceFocusedElement();
    void recacheSourceFromApp();
    void forgetSourceElement();
    ElementReference cachedSourceElement() const;
    /// The element to read from now, or null.
    ElementReference focusedElement() const;
    /// Whether the focused element tells its selected range, so that the query could be read from its text.
    bool focusedElementReportsSelection() const;
    std::optional<Rect> caretBounds() const;
    /// Not empty when present.
    std::optional<std::string> selectedText() const;
    /// The page that the cached element belongs to. Any thread.
    FocusedPage focusedPage() const;
    /// What stands before the caret, from anywhere up to the caret; absent when nobody can tell.
    std::optional<std::string> textBeforeCursor() const;
    /// Number of the poll under way, for the log.
    void setPollTickCount(int count) { pollTickCount_ = count; }

    // Insertion
    /// Replaces the `deleteCharsBefore` characters before the caret by the text, 0.05 s from now.
    /// \param expected   what is about to be deleted, when it is known exactly.
    /// \param hold       keeps the user's keys out of the text meanwhile; let go when the insertion has ended
    /// in
    ///                   whatever way. Null where typing cannot be held.
    /// \param otherwise  what to do when something else is known to stand there by then.
    void insert(const std::string& text, std::ptrdiff_t deleteCharsBefore,
                const std::optional<std::string>& expected, std::shared_ptr<TypingHold> hold = nullptr,
                Otherwise otherwise = Otherwise::keys);
    /// Whether a text may be half changed: the end of the program is to wait for this to pass, which it soon
    /// does.
    bool isInserting() const;
    /// Says that an insertion is not made, and why.
    void leaveUntouched(std::string_view why);
    /// Presses keys in the application that has the focus, for keys that were taken from it without need.
    void giveBack(std::span<const KeyChord> keys);

private:
    Accessibility::Result<ElementReference> elementAttribute(const ElementReference& element,
                                                             std::string_view name) const;
    ElementReference hitTestElement(const ElementReference& root) const;
    enum class Found { asFocus, atPointer };
    void cache(ElementReference element, std::string_view logMessage, Found found = Found::asFocus);
    bool isSourceFocused() const;
    std::optional<Rect> boundsForParameter(const ElementReference& element, std::string_view name,
                                           const AttributeValue& parameter) const;

    /// One insertion under way. What waits for it owns it.
    struct Insertion {
        std::string text;
        std::ptrdiff_t deleteCount = 0;
        FrontApplication target;
        AccessibleInsertion accessible;
        std::shared_ptr<TypingHold> hold;
        Otherwise otherwise = Otherwise::keys;
        int resolveAttempts = 0;
        int timesUntouched = 0;
    };
    using InsertionReference = std::shared_ptr<Insertion>;
    /// The one begun last.
    std::weak_ptr<Insertion> insertion_;
    bool insertViaAccessibility(const InsertionReference& insertion);
    bool act(const InsertionReference& insertion, AccessibleInsertion::Outcome outcome);
    void resolveLater(const InsertionReference& insertion);
    void resolve(const InsertionReference& insertion);
    bool isStillInFront(const FrontApplication& target);
    bool mayGoOn(const Insertion& insertion);
    void insertViaClipboard(const InsertionReference& insertion);
    void pasteOverSelection(const InsertionReference& insertion);
    KeyChord pasteChord() const;
    void borrowClipboards(const KeyChord& chord);
    void paste(const InsertionReference& insertion, const KeyChord& chord);
    void releaseWhenTaken(const InsertionReference& insertion, const std::function<bool()>& isTaken);

    TextServices services_;
    mutable std::mutex mutex_;
    pid_t sourceAppPID_ = 0;
    ElementReference cachedSourceElement_;
    Found found_ = Found::asFocus; ///< the cached element
    std::atomic<int> pollTickCount_ = 0;
    ClipboardLoan clipboardLoan_;
    std::optional<ClipboardLoan> primaryLoan_;
    DelayedJobs jobs_;
};

} // namespace glyma
