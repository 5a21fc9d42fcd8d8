#include "unicode/properties.h"

#include "unicode/text.h"

#include <unicode/uchar.h>

#include <algorithm>
#include <array>

namespace glyma::unicode {
namespace {

constexpr char32_t variationSelector15 = 0xFE0E;
constexpr char32_t variationSelector16 = 0xFE0F;
constexpr char32_t zeroWidthJoiner = 0x200D;

bool hasProperty(char32_t scalar, UProperty property) {
    return u_hasBinaryProperty(static_cast<UChar32>(scalar), property);
}

/// An emoji that is younger than the installed ICU. What Unicode adds in these two ranges are emoji, and they
/// are Extended_Pictographic ahead of being assigned.
bool isYoungEmoji(char32_t scalar) {
    const bool inEmojiRange =
        (scalar >= 0x1F680 && scalar <= 0x1F6FF) || (scalar >= 0x1FA70 && scalar <= 0x1FAFF);
    return inEmojiRange && u_charType(static_cast<UChar32>(scalar)) == U_UNASSIGNED &&
           hasProperty(scalar, UCHAR_EXTENDED_PICTOGRAPHIC);
}

bool needsEmojiPresentation(char32_t scalar) {
    return isEmoji(scalar) && !isEmojiPresentation(scalar);
}

bool settlesPresentation(char32_t follower) {
    return follower == variationSelector15 || follower == variationSelector16 ||
           follower == zeroWidthJoiner || isSkinToneModifier(follower);
}

} // namespace

bool isEmoji(char32_t scalar) {
    return hasProperty(scalar, UCHAR_EMOJI) || isYoungEmoji(scalar);
}

bool isEmojiPresentation(char32_t scalar) {
    return hasProperty(scalar, UCHAR_EMOJI_PRESENTATION) || isYoungEmoji(scalar);
}

bool isEmojiModifierBase(char32_t scalar) {
    return hasProperty(scalar, UCHAR_EMOJI_MODIFIER_BASE);
}

bool isSkinToneModifier(char32_t scalar) {
    return scalar >= 0x1F3FB && scalar <= 0x1F3FF;
}

bool isRegionalIndicator(char32_t scalar) {
    return scalar >= 0x1F1E6 && scalar <= 0x1F1FF;
}

bool isSeparatorOrFormat(char32_t scalar) {
    return (U_GET_GC_MASK(static_cast<UChar32>(scalar)) & (U_GC_Z_MASK | U_GC_CF_MASK)) != 0;
}

bool isWhiteSpace(char32_t scalar) {
    return u_isUWhiteSpace(static_cast<UChar32>(scalar));
}

bool isDecimalDigit(char32_t scalar) {
    return u_isdigit(static_cast<UChar32>(scalar));
}

bool isWordScalar(char32_t scalar) {
    return (U_GET_GC_MASK(static_cast<UChar32>(scalar)) & (U_GC_L_MASK | U_GC_M_MASK | U_GC_N_MASK)) != 0;
}

bool isAssigned(char32_t scalar) {
    return u_charType(static_cast<UChar32>(scalar)) != U_UNASSIGNED;
}

bool isControl(char32_t scalar) {
    return u_charType(static_cast<UChar32>(scalar)) == U_CONTROL_CHAR;
}

bool isMark(char32_t scalar) {
    return (U_GET_GC_MASK(static_cast<UChar32>(scalar)) & U_GC_M_MASK) != 0;
}

bool isInvisible(char32_t scalar) {
    return (U_GET_GC_MASK(static_cast<UChar32>(scalar)) & U_GC_Z_MASK) != 0 ||
           (hasProperty(scalar, UCHAR_DEFAULT_IGNORABLE_CODE_POINT) && isAssigned(scalar));
}

std::string scalarName(char32_t scalar) {
    std::array<char, 256> name{};
    for (const auto choice : {U_UNICODE_CHAR_NAME, U_CHAR_NAME_ALIAS}) {
        auto status = U_ZERO_ERROR;
        const auto length =
            u_charName(static_cast<UChar32>(scalar), choice, name.data(), std::int32_t{name.size()}, &status);
        if (U_SUCCESS(status) && length > 0)
            return {name.data(), static_cast<std::size_t>(length)};
    }
    return {};
}

std::string withEmojiPresentation(std::string_view text) {
    const auto source = scalars(text);
    if (std::ranges::none_of(source, needsEmojiPresentation))
        return std::string(text);
    std::u32string result;
    for (std::size_t at = 0; at < source.size(); ++at) {
        result.push_back(source[at]);
        const bool settled = at + 1 < source.size() && settlesPresentation(source[at + 1]);
        if (needsEmojiPresentation(source[at]) && !settled)
            result.push_back(variationSelector16);
    }
    return fromScalars(result);
}

bool isBareEmojiComponent(std::string_view character) {
    const auto source = scalars(character);
    if (source.size() != 1)
        return false;
    const auto scalar = source.front();
    return isSkinToneModifier(scalar) || isRegionalIndicator(scalar) || scalar == U'#' || scalar == U'*' ||
           (scalar >= U'0' && scalar <= U'9');
}

bool looksLikeEmoji(std::string_view character) {
    const auto source = scalars(character);
    if (source.size() != 1)
        return source.size() > 1;
    return isEmoji(source.front()) && !isBareEmojiComponent(character);
}

} // namespace glyma::unicode
