#include "monitor/typed_text.h"

#include "unicode/text.h"

#include <algorithm>

namespace glyma {

TypedText::TypedText(std::string_view first)
    : query_(first)
    , keystrokeCount_(static_cast<std::ptrdiff_t>(unicode::graphemeCount(first)))
    , keys_(1, Key{false, first.size()}) {}

bool TypedText::isLastCharacter() const {
    auto after = *this;
    after.deleteLast();
    return after.query_.empty() && after.keys_.empty();
}

void TypedText::type(std::string_view text, bool isAutorepeat) {
    if (!isAutorepeat)
        query_ += text;
    keys_.push_back({isAutorepeat, query_.size()});
    ++keystrokeCount_;
}

void TypedText::deleteLast() {
    keystrokeCount_ = std::max<std::ptrdiff_t>(keystrokeCount_ - 1, 0);
    if (!keys_.empty() && keys_.back().isAutorepeat) {
        keys_.pop_back();
        return;
    }
    query_.resize(unicode::withoutLastGrapheme(query_).size());
    while (!keys_.empty() && !keys_.back().isAutorepeat && keys_.back().end > query_.size())
        keys_.pop_back();
}

} // namespace glyma
