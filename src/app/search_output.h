#pragma once

#include "catalogue/command_line_search.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace glyma {

/// An array of objects, one a line, with the parts of each score. UTF-8; what is not valid becomes U+FFFD.
std::string searchResultsAsJson(std::span<const CommandLineRow> rows);

/// One line a row: character, name, keywords, in columns.
/// \param width  columns to cut the lines to; none: as long as they are.
std::string searchResultsAsText(std::span<const CommandLineRow> rows, std::optional<std::size_t> width);

/// Columns that a text takes in a terminal.
std::size_t terminalColumns(std::string_view text);

} // namespace glyma
