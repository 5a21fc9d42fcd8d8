#pragma once

#include "platform/clipboard.h"
#include "platform/scheduler.h"

#include <functional>
#include <optional>
#include <string>

namespace glyma {

/// The use of a clipboard for a text that is pasted: what it held is given back on every way out, the
/// destruction of the loan included. Borrowing again before that keeps what was saved first, unless somebody
/// else has put something on the clipboard in between. Main thread.
class ClipboardLoan {
public:
    ClipboardLoan(Clipboard& clipboard, Scheduler& scheduler);
    ~ClipboardLoan();
    ClipboardLoan(const ClipboardLoan&) = delete;
    ClipboardLoan& operator=(const ClipboardLoan&) = delete;

    /// Saves what the clipboard holds, unless that is our own text.
    void borrow();
    /// Puts the text there until the delay is over; longer, up to a limit, while `isTaken` says that nobody
    /// has asked for it: an application under load would otherwise paste what the user had copied. Borrows,
    /// where nothing is borrowed yet.
    void lend(const std::string& text, Milliseconds delay, std::function<bool()> isTaken);
    void giveBack();
    /// The text is there and nobody has asked for it.
    bool isAwaited() const { return lent_ && !isTaken_(); }

private:
    void giveBackAfter(Milliseconds delay, int furtherWaits);
    bool holdsOurText(const ClipboardSnapshot& contents) const;

    Clipboard& clipboard_;
    Scheduler& scheduler_;
    std::optional<ClipboardSnapshot> saved_;
    /// What we have put on the clipboard and not yet taken off.
    std::optional<std::string> lent_;
    std::function<bool()> isTaken_;
    Subscription giveBackLater_;
};

} // namespace glyma
