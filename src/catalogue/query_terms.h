#pragma once

#include "catalogue/byte_mask.h"
#include "catalogue/byte_scan.h"

#include <string>
#include <string_view>
#include <vector>

namespace glyma {

/// What was typed after the trigger, folded and split into the terms that all must match. Any thread.
class QueryTerms {
public:
    struct Term {
        Needle needle;
        Needle rarestByte; ///< of the needle
        ByteMask mask;
    };

    /// \param query  as typed, UTF-8.
    explicit QueryTerms(std::string_view query);
    QueryTerms(const QueryTerms&) = delete;
    QueryTerms& operator=(const QueryTerms&) = delete;

    const std::string& folded() const { return folded_; }
    const std::vector<Term>& terms() const { return terms_; }
    bool empty() const { return terms_.empty(); }

private:
    std::string folded_;
    std::vector<Term> terms_; ///< refer to folded_
};

} // namespace glyma
