#include "preferences/log.h"

#include "unicode/text.h"

#include <unicode/uchar.h>

namespace glyma {

namespace {

constexpr std::string_view bullet = "\u2022";

bool isAscii(std::string_view cluster) {
    return cluster.size() == 1 && static_cast<unsigned char>(cluster.front()) < 0x80;
}

bool isAsciiPunctuationOrSymbol(std::string_view cluster) {
    constexpr auto mask = U_GC_P_MASK | U_GC_S_MASK;
    return isAscii(cluster) && (U_MASK(u_charType(cluster.front())) & mask) != 0;
}

bool isWhiteSpace(std::string_view cluster, UChar32 scalar) {
    return cluster == "\r\n" || (u_isUWhiteSpace(scalar) && unicode::scalars(cluster).size() == 1);
}

/// What stands for one grapheme cluster. The base, its first scalar, tells what the cluster is.
std::string_view redactedCluster(std::string_view cluster) {
    const auto base = static_cast<UChar32>(unicode::firstScalar(cluster));
    if (u_isUAlphabetic(base))
        return u_isUUppercase(base) ? "X" : "x";
    if (u_getIntPropertyValue(base, UCHAR_NUMERIC_TYPE) != U_NT_NONE)
        return "0";
    if (isWhiteSpace(cluster, base) || isAsciiPunctuationOrSymbol(cluster))
        return cluster;
    return bullet;
}

} // namespace

std::string redacted(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (const auto cluster : unicode::graphemes(text))
        result += redactedCluster(cluster);
    return result;
}

std::string Log::redact(std::string_view text) const {
    return config_.logUnredacted() ? std::string(text) : redacted(text);
}

std::string Log::redactQuoted(std::string_view text) const {
    return unicode::quoted(redact(text));
}

} // namespace glyma
