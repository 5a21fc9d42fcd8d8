#pragma once

#include "catalogue/catalogue_values.h"

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>

namespace glyma {

/// What the user chose for which query: by the term as it was typed, then by the chosen character.
class LearnedTerms {
public:
    using Characters = std::map<std::string, UsageRecord, std::less<>>;
    using Bonuses = std::map<std::string_view, std::int64_t>;

    void set(std::string_view term, std::string_view character, const UsageRecord& record);
    const std::map<std::string, Characters, std::less<>>& all() const { return terms_; }

    /// The points of every character that gets some: for having been chosen for this query, and for longer
    /// terms that begin with it. The keys refer to this object.
    Bonuses bonuses(std::string_view foldedQuery, Timestamp now) const;

private:
    std::map<std::string, Characters, std::less<>> terms_;
};

} // namespace glyma
