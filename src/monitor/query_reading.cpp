#include "monitor/query_reading.h"

namespace glyma {

QueryReading queryIn(const std::optional<std::string>& textBeforeCaret, std::string_view trigger) {
    if (!textBeforeCaret)
        return {};
    const bool isTextEmpty = textBeforeCaret->empty();
    const auto found = textBeforeCaret->rfind(trigger);
    if (found == std::string::npos || textBeforeCaret->find('\n', found) != std::string::npos)
        return {QueryReading::Outcome::noQuery, {}, {}, isTextEmpty};
    const auto start = found + trigger.size();
    return {QueryReading::Outcome::query, textBeforeCaret->substr(start), textBeforeCaret->substr(0, start),
            isTextEmpty};
}

} // namespace glyma
