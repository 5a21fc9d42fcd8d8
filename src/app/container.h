#pragma once

#include "platform/linux/xdg/folders.h"

#include <filesystem>
#include <vector>

namespace glyma {

/// Everything that the program has written about its user: the catalogue's store with its companions and
/// those that were set aside, the backups, the settings. Files only, and only those that are there.
std::vector<std::filesystem::path> containerFiles(const xdg::Folders& folders);

/// Removes them and nothing else. The program must not be using them any more. What cannot be removed stays.
void removeContainer(const xdg::Folders& folders);

} // namespace glyma
