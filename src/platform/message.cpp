#include "platform/message.h"

#include <utility>

namespace glyma {

Message Message::arg(std::string value) && {
    values_.push_back(std::move(value));
    return std::move(*this);
}

Message Message::arg(int value) && {
    return std::move(*this).arg(std::to_string(value));
}

/// In one pass, so that a value may contain what looks like a place.
std::string Message::filled(std::string_view pattern) const {
    std::string text;
    for (std::size_t index = 0; index < pattern.size(); ++index) {
        const auto place = pattern[index] == '%' && index + 1 < pattern.size()
                               ? static_cast<std::size_t>(pattern[index + 1] - '1')
                               : values_.size();
        if (place >= values_.size()) {
            text += pattern[index];
            continue;
        }
        text += values_[place];
        ++index;
    }
    return text;
}

} // namespace glyma
