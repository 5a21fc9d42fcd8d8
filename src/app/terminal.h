#pragma once

#include <cstddef>
#include <cstdio>
#include <optional>
#include <string_view>

namespace glyma {

/// Columns of the terminal behind a stream; absent when it is none.
std::optional<std::size_t> terminalWidth(std::FILE* stream);

/// Writes to standard output. \return the exit status: failed, with the reason on standard error, when not
/// everything could be written.
int print(std::string_view text);

/// Writes "glyma: " and the message to standard error. \return status::failed.
int fail(std::string_view message);

} // namespace glyma
