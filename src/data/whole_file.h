#pragma once

#include <cstddef>
#include <expected>
#include <filesystem>
#include <limits>
#include <span>
#include <string>
#include <string_view>

namespace glyma {

/// Reads a regular file whole. Blocking; any thread. \param limit  bytes; a larger file is an error and is
/// not read. \return the bytes, or why not, for people.
std::expected<std::string, std::string>
readWholeFile(const std::filesystem::path& file, std::size_t limit = std::numeric_limits<std::size_t>::max());

/// Puts a file with these bytes, for the user's eyes only, in the place of the one that is there: whoever
/// reads it, and whatever ends the process meanwhile, finds the old bytes or the new ones, which are on disk
/// when the call returns. An end in between leaves a file beside it for which isUnfinished() holds. Blocking;
/// any thread. \return why not, for people.
std::expected<void, std::string> replaceWholeFile(const std::filesystem::path& file,
                                                  std::span<const char> bytes);
/// Whether the name is one under which replaceWholeFile() writes what becomes `file`.
bool isUnfinished(std::string_view name, std::string_view file);

/// Returns when files made, renamed or removed in the folder are so on disk. Some file systems cannot tell.
void syncFolder(const std::filesystem::path& folder);

} // namespace glyma
