#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace glyma {

/// What the text before the caret says of the query.
struct QueryReading {
    enum class Outcome {
        unavailable, ///< the text cannot be read
        noQuery,     ///< no trigger before the caret, or none on its line
        query,
    };
    Outcome outcome = Outcome::unavailable;
    /// What follows the last trigger; empty when the caret stands right behind it.
    std::string query;
    /// What stands before the query, the trigger included.
    std::string before;
    /// Nothing at all stands before the caret.
    bool isTextEmpty = false;

    bool holdsQuery() const { return outcome == Outcome::query && !query.empty(); }
    bool operator==(const QueryReading&) const = default;
};

/// \param textBeforeCaret  from some point before the caret up to it; absent when it could not be read.
QueryReading queryIn(const std::optional<std::string>& textBeforeCaret, std::string_view trigger);

} // namespace glyma
