#pragma once

#include "catalogue/catalogue_values.h"
#include "catalogue/learned_use.h"
#include "catalogue/replacement_usage.h"
#include "catalogue/search_section.h"
#include "data/store.h"
#include "preferences/user_preferences.h"

#include <cstdint>
#include <functional>
#include <span>
#include <string_view>
#include <vector>

/// What stands in the index behind the characters with keywords.
namespace glyma {

/// A used character without keywords.
EmojiEntry usedEntry(const CharacterRow& row);
/// The same of a record, which may have keywords.
EmojiEntry usedEntry(const UnicodeChar& record);

/// The two random picks.
std::vector<EmojiEntry> specialEntries();

/// The user's snippets, but those without text and those whose text is a character of the index.
std::vector<EmojiEntry> replacementEntries(std::span<const UserReplacement> replacements,
                                           const ReplacementUsage& usage,
                                           const std::function<bool(std::string_view)>& isIndexed);

/// Adds the use of the entries, the first of which has this number.
void addUse(UseByEntry& use, std::span<const EmojiEntry> entries, std::uint32_t firstNumber);

} // namespace glyma
