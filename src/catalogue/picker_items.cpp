#include "catalogue/picker_items.h"

#include <algorithm>

namespace glyma {

PickerItems::PickerItems(std::vector<PickerItem> items) {
    const auto size = items.size();
    rows_ = std::make_shared<Rows>(Rows{size,
                                        [items = std::make_shared<std::vector<PickerItem>>(std::move(items))](
                                            std::size_t index) { return std::move((*items)[index]); },
                                        {}});
}

PickerItems::PickerItems(std::size_t size, Maker make)
    : rows_(std::make_shared<Rows>(Rows{size, std::move(make), {}})) {}

const PickerItem& PickerItems::operator[](std::size_t index) const {
    auto made = rows_->made.find(index);
    if (made == rows_->made.end())
        made = rows_->made.emplace(index, rows_->make(index)).first;
    return made->second;
}

bool PickerItems::operator==(const PickerItems& other) const {
    return rows_ == other.rows_ || (size() == other.size() && std::equal(begin(), end(), other.begin()));
}

} // namespace glyma
