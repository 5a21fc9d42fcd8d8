#include "catalogue/fuzzy_score.h"

#include "catalogue/byte_mask.h"
#include "unicode/text.h"

#include <vector>

namespace glyma {

namespace {

bool isSpace(char character) {
    return character == ' ';
}
bool isSpace(std::string_view character) {
    return character == " ";
}

template<typename Characters>
std::optional<std::int64_t> scored(const Characters& pattern, const Characters& target) {
    std::int64_t score = 0;
    std::size_t matched = 0;
    std::size_t next = 0; // the place behind the previous match
    for (std::size_t at = 0; matched < pattern.size() && at < target.size(); ++at) {
        if (!(target[at] == pattern[matched]))
            continue;
        if (matched > 0 && at == next)
            score += 10;
        if (at == 0 || isSpace(target[at - 1]))
            score += 5;
        ++matched;
        next = at + 1;
    }
    if (matched < pattern.size())
        return std::nullopt;
    // Earliest places: they are the first ones exactly when the target starts with the pattern.
    return next == pattern.size() ? score + 20 : score;
}

} // namespace

std::optional<std::int64_t> fuzzyScore(std::string_view pattern, std::string_view target) {
    if (((byteMask(pattern) | byteMask(target)) & manyBytesBit) == 0)
        return scored(pattern, target);
    return scored(unicode::graphemes(pattern), unicode::graphemes(target));
}

} // namespace glyma
