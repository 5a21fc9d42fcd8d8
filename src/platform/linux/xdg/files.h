#pragma once

#include <cstddef>
#include <expected>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>

namespace glyma::xdg {

/// Reads a whole regular file. Never blocks on pipes and devices: they fail.
/// \param limit  bytes; a larger file fails.
std::expected<std::string, std::error_code> readFile(const std::filesystem::path& file, std::size_t limit);

/// Replaces a file as a whole: whoever reads it, and whatever ends us meanwhile, finds the old contents or
/// the new ones, which are on disk when the call returns. Writers of one file must not overlap. \param mode
/// permissions of the new file.
std::expected<void, std::error_code> replaceFile(const std::filesystem::path& file, std::string_view contents,
                                                 unsigned mode);

/// Puts an empty file in the place of whatever file is there, which others may have put. Does not wait for
/// the disk. \param mode  permissions of the new file.
std::expected<void, std::error_code> makeEmptyFile(const std::filesystem::path& file, unsigned mode);

/// Makes the folder and those above it, readable by the user alone.
std::expected<void, std::error_code> makePrivateFolder(const std::filesystem::path& folder);

} // namespace glyma::xdg
