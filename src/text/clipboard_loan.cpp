#include "text/clipboard_loan.h"

#include <algorithm>
#include <utility>

namespace glyma {

namespace {

constexpr Milliseconds betweenFurtherWaits{100};
/// Half a minute: longer than applications hang that live on.
constexpr int mostFurtherWaits = 295;

} // namespace

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

void ClipboardLoan::lend(const std::string& text, Milliseconds delay, std::function<bool()> isTaken) {
    if (!saved_)
        borrow();
    clipboard_.setTransientText(text);
    lent_ = text;
    isTaken_ = std::move(isTaken);
    giveBackAfter(delay, mostFurtherWaits);
}

void ClipboardLoan::giveBackAfter(Milliseconds delay, int furtherWaits) {
    giveBackLater_ = scheduler_.after(delay, [this, furtherWaits] {
        if (furtherWaits > 0 && lent_ && !isTaken_())
            giveBackAfter(betweenFurtherWaits, furtherWaits - 1);
        else
            giveBack();
    });
}

void ClipboardLoan::giveBack() {
    if (!lent_)
        return;
    lent_.reset();
    clipboard_.restore(*saved_);
    saved_.reset();
}

} // namespace glyma
