#pragma once

#include "catalogue/catalogue_values.h"

#include <cstddef>
#include <functional>
#include <initializer_list>
#include <iterator>
#include <memory>
#include <unordered_map>
#include <vector>

namespace glyma {

/// A ranked list of results. A search for one letter finds thousands of entries of which ten are looked at,
/// at every keystroke: an item is made when it is first asked for, and kept. Copies share the items. Main
/// thread.
class PickerItems {
public:
    using Maker = std::function<PickerItem(std::size_t)>;

    PickerItems() = default;
    PickerItems(std::vector<PickerItem> items);
    PickerItems(std::initializer_list<PickerItem> items)
        : PickerItems(std::vector<PickerItem>(items)) {}
    /// \param make  gives the item at an index below `size`; called at most once for each.
    PickerItems(std::size_t size, Maker make);

    std::size_t size() const { return rows_ ? rows_->size : 0; }
    bool empty() const { return size() == 0; }
    /// The reference holds as long as this list or a copy of it.
    const PickerItem& operator[](std::size_t index) const;
    const PickerItem& front() const { return (*this)[0]; }
    const PickerItem& back() const { return (*this)[size() - 1]; }

    class const_iterator {
    public:
        using iterator_category = std::forward_iterator_tag;
        using value_type = PickerItem;
        using difference_type = std::ptrdiff_t;
        using pointer = const PickerItem*;
        using reference = const PickerItem&;

        const_iterator() = default;
        const_iterator(const PickerItems* items, std::size_t index)
            : items_(items)
            , index_(index) {}
        reference operator*() const { return (*items_)[index_]; }
        pointer operator->() const { return &(*items_)[index_]; }
        const_iterator& operator++() {
            ++index_;
            return *this;
        }
        const_iterator operator++(int) { return {items_, index_++}; }
        bool operator==(const const_iterator&) const = default;

    private:
        const PickerItems* items_ = nullptr;
        std::size_t index_ = 0;
    };
    using value_type = PickerItem;
    using iterator = const_iterator;
    const_iterator begin() const { return {this, 0}; }
    const_iterator end() const { return {this, size()}; }

    /// Makes every item.
    operator std::vector<PickerItem>() const { return {begin(), end()}; }
    bool operator==(const PickerItems& other) const;

private:
    struct Rows {
        std::size_t size;
        Maker make;
        std::unordered_map<std::size_t, PickerItem> made;
    };
    std::shared_ptr<Rows> rows_;
};

} // namespace glyma
