#pragma once

#include "catalogue/catalogue_values.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace glyma {

/// What the target loses before the chosen text goes in. Counts grapheme clusters.
struct Deletion {
    std::ptrdiff_t count = 0; ///< trigger included
    /// What is about to be deleted, when the keys tell it exactly.
    std::optional<std::string> expected;
    bool operator==(const Deletion&) const = default;
};

/// \param keystrokeCount  characters that the keys put into the target; more than the query has when a key
/// repeated.
///                        Trusted only while the query is followed by keystrokes.
Deletion deletionOf(std::string_view trigger, const std::string& query, std::ptrdiff_t keystrokeCount,
                    bool isKeystrokeMode);

/// The text that an entry inserts.
/// \param wantsTextStyle  the character's text presentation instead of the emoji one.
std::string textOf(const EmojiEntry& entry, const std::optional<std::string>& skinToneModifier,
                   bool wantsTextStyle);

} // namespace glyma
