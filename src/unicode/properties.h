#pragma once

#include <string>
#include <string_view>

/// Unicode character properties, from ICU's tables. Any thread.
namespace glyma::unicode {

bool isEmoji(char32_t scalar);
bool isEmojiPresentation(char32_t scalar);
bool isEmojiModifierBase(char32_t scalar);
bool isSkinToneModifier(char32_t scalar);
bool isRegionalIndicator(char32_t scalar);
/// Zs, Zl, Zp or Cf.
bool isSeparatorOrFormat(char32_t scalar);
bool isWhiteSpace(char32_t scalar);
/// General category Nd.
bool isDecimalDigit(char32_t scalar);
/// A letter, a number or a mark on one.
bool isWordScalar(char32_t scalar);

/// Assigned by the Unicode version of the installed ICU.
bool isAssigned(char32_t scalar);
/// General category Cc.
bool isControl(char32_t scalar);
/// A mark, which is drawn on the character before it.
bool isMark(char32_t scalar);
/// A blank, a separator or a character that only controls how others are shown.
bool isInvisible(char32_t scalar);

/// The official name, else the formal alias; empty for a scalar that has neither.
std::string scalarName(char32_t scalar);

/// Gives each scalar that is emoji but not by default drawn as one its U+FE0F, unless U+FE0E, U+FE0F, U+200D
/// or a skin tone modifier follows it.
std::string withEmojiPresentation(std::string_view text);

/// A single skin tone modifier, regional indicator, "#", "*" or ASCII digit: Emoji by property, never on its
/// own.
bool isBareEmojiComponent(std::string_view character);
/// More than one scalar, or one with the Emoji property that is no bare component.
bool looksLikeEmoji(std::string_view character);

} // namespace glyma::unicode
