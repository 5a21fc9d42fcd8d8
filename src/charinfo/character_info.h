#pragma once

#include "platform/scheduler.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace glyma {

struct ScalarInfo {
    char32_t value = 0;
    std::string hex; ///< "U+1F600"
    std::string name;
    bool operator==(const ScalarInfo&) const = default;
};

/// What there is to know about one character, that is, about one extended grapheme cluster.
struct CharacterInfo {
    std::string character; ///< as it stood in the text
    std::string name;
    std::string block; ///< empty when unknown
    std::vector<std::string> keywords;
    std::vector<ScalarInfo> scalars;
    /// Scalars beyond those in `scalars`: marks can be heaped on a letter without end.
    std::size_t omittedScalars = 0;
    bool isEmoji = false;
    bool supportsSkinTone = false;
    std::optional<std::string> appliedToneName;
    std::int64_t usageCount = 0;
    std::optional<Timestamp> lastUsed;
    std::optional<bool> isEnabled;              ///< in the picker; absent when the catalogue does not have it
    std::optional<std::int64_t> popularityRank; ///< 0 is the most popular
    bool operator==(const CharacterInfo&) const = default;
};

/// So many characters are shown at most, and so many scalars of one.
inline constexpr std::size_t shownCharacters = 24;
inline constexpr std::size_t describedScalars = 64;

/// The part of a character that is described, drawn and copied as bytes or code points: its first
/// `describedScalars` scalars, which is all of it but for heaps of marks.
std::string_view describedPart(std::string_view character);

// How a character is copied
/// "F0 9F 98 80"
std::string utf8Bytes(std::string_view character);
/// "&#x1F600;", one a scalar.
std::string htmlEntities(std::string_view character);
/// "U+1F600", separated by spaces.
std::string codePoints(std::string_view character);

} // namespace glyma
