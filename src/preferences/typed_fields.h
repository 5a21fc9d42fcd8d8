#pragma once

#include "preferences/records.h"

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

/// What the preferences make of the texts that people type into them.
namespace glyma {

inline constexpr std::int64_t leastPickerRows = 3;
inline constexpr std::int64_t mostPickerRows = 15;

/// \param text  decimal, with an optional sign and nothing else.
/// \return absent for anything but a number from 3 to 15: such a number is refused, not brought into range.
std::optional<std::int64_t> parseVisibleRows(std::string_view text);

/// The pieces between commas without the white space around them; empty pieces are left out. UTF-8.
std::vector<std::string> splitKeywords(std::string_view text);
std::string joinKeywords(const std::vector<std::string>& keywords);

/// The list with the snippet in the place of that with the same identifier, else at the end.
std::vector<UserReplacement> withSaved(std::vector<UserReplacement> list, const UserReplacement& snippet);
std::vector<UserReplacement> without(std::vector<UserReplacement> list,
                                     const std::set<std::string>& identifiers);

} // namespace glyma
