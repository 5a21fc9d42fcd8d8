#include "unicode/ascii.h"
#include "unicode/text.h"

#include <unicode/bytestream.h>
#include <unicode/casemap.h>
#include <unicode/locid.h>
#include <unicode/normalizer2.h>
#include <unicode/stringoptions.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <stdexcept>

namespace glyma::unicode {
namespace {

icu::StringPiece piece(std::string_view text) {
    return {text.data(), static_cast<std::int32_t>(text.size())};
}

std::string asciiLowercased(std::string_view text) {
    std::string result(text.size(), '\0');
    lowerAscii(text, result.data());
    return result;
}

const icu::Normalizer2& normalizer(const icu::Normalizer2* (*get)(UErrorCode&)) {
    auto status = U_ZERO_ERROR;
    const auto* found = get(status);
    if (U_FAILURE(status))
        throw std::runtime_error("ICU has no normalization data");
    return *found;
}

/// Accents, tone marks and points; not the vowel signs that some scripts write as nonspacing marks: without
/// them different words would become one.
bool isDiacritic(UChar32 scalar) {
    return u_charType(scalar) == U_NON_SPACING_MARK &&
           (u_hasBinaryProperty(scalar, UCHAR_DIACRITIC) || !u_hasBinaryProperty(scalar, UCHAR_ALPHABETIC));
}

icu::UnicodeString withoutDiacritics(const icu::UnicodeString& decomposed) {
    icu::UnicodeString result(decomposed.length(), UChar32{0}, 0);
    for (std::int32_t at = 0; at < decomposed.length(); at = decomposed.moveIndex32(at, 1)) {
        const auto scalar = decomposed.char32At(at);
        if (!isDiacritic(scalar))
            result.append(scalar);
    }
    return result;
}

} // namespace

std::string lowercased(std::string_view text) {
    if (isAscii(text))
        return asciiLowercased(text);
    const auto source = sanitized(text); // ICU would keep ill-formed bytes
    std::string result;
    icu::StringByteSink<std::string> sink(&result, static_cast<std::int32_t>(source.size()));
    auto status = U_ZERO_ERROR;
    icu::CaseMap::utf8ToLower("", 0, piece(source), sink, nullptr, status);
    return result;
}

std::string fold(std::string_view text) {
    if (isAscii(text))
        return asciiLowercased(text);
    static const auto& decomposition = normalizer(icu::Normalizer2::getNFDInstance);
    static const auto& composition = normalizer(icu::Normalizer2::getNFCInstance);

    auto status = U_ZERO_ERROR;
    auto folded = icu::UnicodeString::fromUTF8(piece(text)).toLower(icu::Locale::getRoot());
    folded = composition.normalize(withoutDiacritics(decomposition.normalize(folded, status)), status);
    std::string result;
    folded.toUTF8String(result);
    return withStraightQuotes(result);
}

} // namespace glyma::unicode
