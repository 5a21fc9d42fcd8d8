#include "picker/emoji_picker_view_model.h"

#include <algorithm>
#include <utility>

namespace glyma {

EmojiPickerViewModel::EmojiPickerViewModel(UnicodeDataManager& catalogue)
    : catalogue_(catalogue)
    , importSubscription_(
          catalogue.importComplete.connect([this](const std::string&) { refreshAfterImport(); })) {}

EmojiPickerViewModel::~EmojiPickerViewModel() {
    if (searchTask_)
        searchTask_->cancel();
}

template<typename Value>
void EmojiPickerViewModel::assign(Value& field, Value value) {
    if (field == value)
        return;
    field = std::move(value);
    changed.emit();
}

void EmojiPickerViewModel::setTrigger(const std::string& trigger) {
    assign(trigger_, trigger);
}

void EmojiPickerViewModel::setQuery(const std::string& query) {
    assign(query_, query);
    performSearch();
}

void EmojiPickerViewModel::setSelectedIndex(std::ptrdiff_t index) {
    assign(selectedIndex_, index);
}

void EmojiPickerViewModel::setIsKeystrokeMode(bool value) {
    assign(isKeystrokeMode_, value);
}

void EmojiPickerViewModel::setIsPolling(bool value) {
    assign(isPolling_, value);
}

void EmojiPickerViewModel::setIsAltHeld(bool value) {
    assign(isAltHeld_, value);
}

void EmojiPickerViewModel::setNeedsScrollToSelection(bool value) {
    assign(needsScrollToSelection_, value);
}

void EmojiPickerViewModel::setIsSearching(bool value) {
    assign(isSearching_, value);
}

void EmojiPickerViewModel::setOnSelection(std::function<void(const PickerItem&)> callback) {
    onSelection_ = std::move(callback);
}

void EmojiPickerViewModel::setOnDismiss(std::function<void()> callback) {
    onDismiss_ = std::move(callback);
}

void EmojiPickerViewModel::setOnItemsChanged(std::function<void()> callback) {
    onItemsChanged_ = std::move(callback);
}

void EmojiPickerViewModel::setItems(PickerItems items) {
    items_ = std::move(items);
    itemCount_ = items_.size();
    changed.emit();
    if (onItemsChanged_)
        onItemsChanged_();
}

void EmojiPickerViewModel::performSearch() {
    if (searchTask_)
        searchTask_->cancel();
    const auto deliver = [this, alive = std::weak_ptr(alive_)](PickerItems items, bool isFinal) {
        if (alive.expired())
            return;
        const auto count = static_cast<std::ptrdiff_t>(items.size());
        setItems(std::move(items));
        if (selectedIndex_ >= count)
            setSelectedIndex(0);
        setIsSearching(!isFinal);
    };
    searchTask_ = catalogue_.search(query_, deliver);
    setSelectedIndex(0);
}

void EmojiPickerViewModel::refreshAfterImport() {
    if (!onDismiss_)
        return;
    if (searchTask_)
        searchTask_->cancel();
    // The highlight stays where the user left it while the catalogue grows under an open picker.
    const auto deliver = [this, alive = std::weak_ptr(alive_)](PickerItems items, bool isFinal) {
        if (alive.expired())
            return;
        setItems(std::move(items));
        setIsSearching(!isFinal);
    };
    searchTask_ = catalogue_.search(query_, deliver);
}

void EmojiPickerViewModel::moveSelection(std::ptrdiff_t delta) {
    if (items_.empty())
        return;
    const auto last = static_cast<std::ptrdiff_t>(items_.size()) - 1;
    if (selectedIndex_ >= 0)
        setSelectedIndex(std::clamp<std::ptrdiff_t>(selectedIndex_ + delta, 0, last));
    else
        setSelectedIndex(delta >= 1 ? 0 : last);
    setNeedsScrollToSelection(true);
}

void EmojiPickerViewModel::confirmSelection() {
    if (selectedIndex_ < 0 || selectedIndex_ >= static_cast<std::ptrdiff_t>(items_.size()) || !onSelection_)
        return;
    // Choosing closes the picker, which drops the callback and the items.
    const auto choose = onSelection_;
    const auto item = items_[static_cast<std::size_t>(selectedIndex_)];
    choose(item);
}

void EmojiPickerViewModel::clickRow(std::ptrdiff_t index, const PickerItem& item) {
    if (index != selectedIndex_) {
        setSelectedIndex(index);
        return;
    }
    if (const auto choose = onSelection_) {
        const auto chosen = item;
        choose(chosen);
    }
}

void EmojiPickerViewModel::reset() {
    if (const auto task = std::exchange(searchTask_, nullptr))
        task->cancel();
    setItems({});
    setSelectedIndex(0);
    setIsSearching(false);
}

} // namespace glyma
