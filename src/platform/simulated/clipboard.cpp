#include "platform/simulated/clipboard.h"

#include <algorithm>
#include <utility>

namespace glyma::simulated {

namespace {

std::string valueOf(const ClipboardSnapshot& contents, std::string_view type) {
    const auto found = std::ranges::find(contents, type, &ClipboardSnapshot::value_type::first);
    return found == contents.end() ? std::string() : found->second;
}

} // namespace

ClipboardSnapshot SimulatedClipboard::snapshot() {
    return contents();
}

void SimulatedClipboard::setTransientText(const std::string& text) {
    replace({{textType, text}, {secretHint, "secret"}}, true);
}

bool SimulatedClipboard::isTransientTextTaken() const {
    const std::lock_guard lock(mutex_);
    return isOurs_ && isTaken_;
}

void SimulatedClipboard::restore(const ClipboardSnapshot& snapshot) {
    if (isOurs_)
        replace(snapshot, false);
}

void SimulatedClipboard::set(ClipboardSnapshot contents) {
    replace(std::move(contents), false);
}

void SimulatedClipboard::replace(ClipboardSnapshot contents, bool isOurs) {
    const std::lock_guard lock(mutex_);
    history_.push_back({valueOf(contents, textType), !valueOf(contents, secretHint).empty()});
    contents_ = std::move(contents);
    isOurs_ = isOurs;
    isTaken_ = false;
}

ClipboardSnapshot SimulatedClipboard::contents() const {
    const std::lock_guard lock(mutex_);
    return contents_;
}

std::string SimulatedClipboard::text() const {
    const std::lock_guard lock(mutex_);
    return valueOf(contents_, textType);
}

std::string SimulatedClipboard::take() {
    const std::lock_guard lock(mutex_);
    isTaken_ = true;
    return valueOf(contents_, textType);
}

std::vector<SimulatedClipboard::Entry> SimulatedClipboard::history() const {
    const std::lock_guard lock(mutex_);
    return history_;
}

} // namespace glyma::simulated
