#include "text/clipboard_loan.h"

#include <algorithm>

namespace glyma {

ClipboardLoan::ClipboardLoan(Clipboard& clipboard, Scheduler& scheduler)
    : clipboard_(clipboard)
    , scheduler_(scheduler) {}

ClipboardLoan::~ClipboardLoan() {
    giveBack();
}

void ClipboardLoan::borrow() {
    auto contents = clipboard_.snapshot();
    if (!saved_ || !holdsOurText(contents))
        saved_ = std::move(contents);
}

bool ClipboardLoan::holdsOurText(const ClipboardSnapshot& contents) const {
    return lent_ && std::ranges::any_of(contents, [&](const auto& entry) { return entry.second == *lent_; });
}

void ClipboardLoan::lend(const std::string& text, Milliseconds delay) {
    if (!saved_)
        borrow();
    clipboard_.setTransientText(text);
    lent_ = text;
    giveBackLater_ = scheduler_.after(delay, [this] { giveBack(); });
}

void ClipboardLoan::giveBack() {
    if (!lent_)
        return;
    lent_.reset();
    clipboard_.restore(*saved_);
    saved_.reset();
}

} // namespace glyma
