#include "catalogue/query_terms.h"

#include "unicode/text.h"

#include <algorithm>

namespace glyma {

QueryTerms::QueryTerms(std::string_view query)
    : folded_(unicode::fold(query)) {
    std::string_view rest = folded_;
    while (!rest.empty()) {
        const auto end = std::min(rest.find(' '), rest.size());
        if (end > 0) {
            const Needle needle(rest.substr(0, end));
            terms_.push_back({needle, needle.rarestByte(), byteMask(needle.text())});
        }
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
}

} // namespace glyma
