#include "data/block_tables.h"

#include "unicode/properties.h"
#include "unicode/text.h"

#include <algorithm>
#include <array>

namespace glyma {
namespace {

using namespace std::string_view_literals;

constexpr std::array defaultEnabled = {
    "Arrows"sv,
    "Basic Latin"sv,
    "Block Elements"sv,
    "Box Drawing"sv,
    "CJK Symbols and Punctuation"sv,
    "Control Pictures"sv,
    "Currency Symbols"sv,
    "Dingbats"sv,
    "Egyptian Hieroglyphs"sv,
    "Emoticons"sv,
    "Enclosed Alphanumeric Supplement"sv,
    "Enclosed Alphanumerics"sv,
    "Enclosed CJK Letters and Months"sv,
    "Enclosed Ideographic Supplement"sv,
    "General Punctuation"sv,
    "Geometric Shapes"sv,
    "Geometric Shapes Extended"sv,
    "Greek and Coptic"sv,
    "IPA Extensions"sv,
    "Latin-1 Supplement"sv,
    "Letterlike Symbols"sv,
    "Mahjong Tiles"sv,
    "Mathematical Operators"sv,
    "Meroitic Hieroglyphs"sv,
    "Miscellaneous Mathematical Symbols-A"sv,
    "Miscellaneous Mathematical Symbols-B"sv,
    "Miscellaneous Symbols"sv,
    "Miscellaneous Symbols and Arrows"sv,
    "Miscellaneous Symbols and Pictographs"sv,
    "Miscellaneous Technical"sv,
    "Number Forms"sv,
    "Playing Cards"sv,
    "Superscripts and Subscripts"sv,
    "Supplemental Arrows-A"sv,
    "Supplemental Arrows-B"sv,
    "Supplemental Mathematical Operators"sv,
    "Supplemental Symbols and Pictographs"sv,
    "Symbols and Pictographs Extended-A"sv,
    "Transport and Map Symbols"sv,
};

constexpr std::array emoji = {
    "Arrows"sv,
    "Basic Latin"sv,
    "CJK Symbols and Punctuation"sv,
    "Dingbats"sv,
    "Emoticons"sv,
    "Enclosed Alphanumeric Supplement"sv,
    "Enclosed Alphanumerics"sv,
    "Enclosed CJK Letters and Months"sv,
    "Enclosed Ideographic Supplement"sv,
    "General Punctuation"sv,
    "Geometric Shapes"sv,
    "Geometric Shapes Extended"sv,
    "Latin-1 Supplement"sv,
    "Letterlike Symbols"sv,
    "Mahjong Tiles"sv,
    "Miscellaneous Symbols"sv,
    "Miscellaneous Symbols and Arrows"sv,
    "Miscellaneous Symbols and Pictographs"sv,
    "Miscellaneous Technical"sv,
    "Playing Cards"sv,
    "Supplemental Arrows-B"sv,
    "Supplemental Symbols and Pictographs"sv,
    "Symbols and Pictographs Extended-A"sv,
    "Transport and Map Symbols"sv,
};

constexpr std::array emojiOnly = {
    "Enclosed Alphanumeric Supplement"sv, "Enclosed Alphanumerics"sv, "Enclosed CJK Letters and Months"sv,
    "Enclosed Ideographic Supplement"sv,  "Mahjong Tiles"sv,          "Playing Cards"sv,
};

// Looked up by binary search.
static_assert(std::ranges::is_sorted(defaultEnabled));
static_assert(std::ranges::is_sorted(emoji));
static_assert(std::ranges::is_sorted(emojiOnly));

struct Extra {
    std::string_view character;
    std::array<std::string_view, 2> keywords;
    std::size_t count;
};

constexpr std::array extras = {
    Extra{"\u2423", {"space"}, 1},
    Extra{"\u238B", {"escape"}, 1},
    Extra{"\u21E7", {"shift"}, 1},
    Extra{"\u21A9", {"enter"}, 1},
    Extra{"\u2303", {"control", "ctrl"}, 2},
    Extra{"\u2318", {"command", "cmd"}, 2},
    Extra{"\u2325", {"option", "alt"}, 2},
    Extra{"\u21EA", {"capslock"}, 1},
    Extra{"\u21E5", {"tab"}, 1},
    Extra{"\u232B", {"del"}, 1},
    // Their names carry only sign numbers; the word is for what they depict.
    Extra{"\U000130B8", {"penis"}, 1},
    Extra{"\U000130B9", {"penis"}, 1},
    Extra{"\U000130BA", {"penis"}, 1},
};

constexpr std::u32string_view keptInBasicLatin = U"&-/=@\\^_`|~";
constexpr std::u32string_view keptInControlPictures = U"\u2422\u2423\u2425\u2426";
constexpr std::u32string_view keptInGreek = U"αβγδεθμπφω";

bool isFirstScalarIn(std::string_view character, std::u32string_view kept) {
    return !character.empty() && kept.find(unicode::firstScalar(character)) != kept.npos;
}

bool isTypedDirectly(std::string_view character) {
    return unicode::scalars(character).size() == 1 && !isFirstScalarIn(character, keptInBasicLatin);
}

bool isCircledDigit(std::string_view name) {
    const auto lower = unicode::lowercased(name);
    const auto mentions = [&](std::string_view word) { return lower.find(word) != std::string::npos; };
    return lower.starts_with("dingbat") && (mentions("digit") || mentions("number"));
}

} // namespace

std::span<const std::string_view> defaultEnabledBlocks() {
    return defaultEnabled;
}

std::span<const std::string_view> emojiBlocks() {
    return emoji;
}

std::span<const std::string_view> emojiOnlyBlocks() {
    return emojiOnly;
}

std::span<const std::string_view> extraKeywords(std::string_view character) {
    const auto found = std::ranges::find(extras, character, &Extra::character);
    if (found == extras.end())
        return {};
    return std::span(found->keywords).first(found->count);
}

bool isDefaultEnabledBlock(std::string_view blockName) {
    return std::ranges::binary_search(defaultEnabled, blockName);
}

bool isEmojiBlock(std::string_view blockName) {
    return std::ranges::binary_search(emoji, blockName);
}

bool isHiddenByDefault(std::string_view character, std::string_view name, std::string_view blockName) {
    if (std::ranges::binary_search(emojiOnly, blockName))
        return !unicode::looksLikeEmoji(character);
    if (blockName == "Basic Latin")
        return isTypedDirectly(character);
    if (blockName == "Dingbats")
        return isCircledDigit(name);
    if (blockName == "General Punctuation")
        return !character.empty() && unicode::isSeparatorOrFormat(unicode::firstScalar(character));
    if (blockName == "Control Pictures")
        return !isFirstScalarIn(character, keptInControlPictures);
    if (blockName == "Greek and Coptic")
        return !isFirstScalarIn(character, keptInGreek);
    if (blockName == "Latin-1 Supplement")
        return unicode::lowercased(name) == "soft hyphen";
    return false;
}

} // namespace glyma
