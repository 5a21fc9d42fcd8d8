#pragma once

#include "catalogue/unicode_data_manager.h"
#include "monitor/picker_port.h"

#include <atomic>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace glyma {

/// What the picker shows and which entry is highlighted. Main thread, but for itemCount(). `changed` is
/// emitted when a property differs from before, and after every assignment of the items.
class EmojiPickerViewModel : public PickerModel {
public:
    explicit EmojiPickerViewModel(UnicodeDataManager& catalogue);
    ~EmojiPickerViewModel() override;

    const std::string& trigger() const { return trigger_; }
    const std::string& query() const { return query_; }
    const PickerItems& items() const { return items_; }
    bool isSearching() const { return isSearching_; }
    bool isPolling() const { return isPolling_; }
    bool isKeystrokeMode() const { return isKeystrokeMode_; }
    bool isAltHeld() const override { return isAltHeld_; }
    std::ptrdiff_t selectedIndex() const { return selectedIndex_; }
    bool needsScrollToSelection() const { return needsScrollToSelection_; }
    std::size_t itemCount() const override { return itemCount_; }

    void setTrigger(const std::string& trigger) override;
    void setQuery(const std::string& query) override;
    void setSelectedIndex(std::ptrdiff_t index) override;
    void setIsKeystrokeMode(bool value) override;
    void setIsPolling(bool value) override;
    void setIsAltHeld(bool value) override;
    void setNeedsScrollToSelection(bool value);
    void setOnSelection(std::function<void(const PickerItem&)> callback) override;
    void setOnDismiss(std::function<void()> callback) override;
    /// Called after every assignment of the items, also of an equal list.
    void setOnItemsChanged(std::function<void()> callback);

    void moveSelection(std::ptrdiff_t delta) override;
    void confirmSelection() override;
    void clickRow(std::ptrdiff_t index, const PickerItem& item);
    void reset();

    Signal<> changed;

private:
    void performSearch();
    void refreshAfterImport();
    void setItems(PickerItems items);
    void setIsSearching(bool value);
    template<typename Value>
    void assign(Value& field, Value value);

    UnicodeDataManager& catalogue_;
    std::string trigger_ = ":";
    std::string query_;
    PickerItems items_;
    std::atomic<std::size_t> itemCount_ = 0;
    std::function<void()> onItemsChanged_;
    bool isSearching_ = false;
    bool isPolling_ = false;
    bool isKeystrokeMode_ = false;
    bool isAltHeld_ = false;
    std::ptrdiff_t selectedIndex_ = 0;
    bool needsScrollToSelection_ = false;
    std::function<void(const PickerItem&)> onSelection_;
    std::function<void()> onDismiss_;
    std::shared_ptr<SearchTask> searchTask_;
    std::shared_ptr<int> alive_ = std::make_shared<int>();
    Subscription importSubscription_;
};

} // namespace glyma
