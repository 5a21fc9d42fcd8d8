#include "catalogue/query_terms.h"

#include "unicode/text.h"

#include <algorithm>

namespace glyma {

QueryTerms::QueryTerms(std::string_view query)
    : folded_(unicode::fold(query)) {
    std::string_view rest = folded_;
    while (!rest.empty()) {
        const auto end = std::min(rest.find(' '), rest.size());
        if (end > 0)
            terms_.push_back({Needle(rest.substr(0, end)), byteMask(rest.substr(0, end))});
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
}

} // namespace glyma
