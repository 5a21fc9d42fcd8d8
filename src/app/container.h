#pragma once

#include "platform/linux/xdg/folders.h"
#include "platform/login_item.h"

#include <filesystem>
#include <vector>

namespace glyma {

/// Removes everything that the program has written about its user and nothing else: what the catalogue keeps
/// (catalogueFiles), the settings, also those that were set aside, and the start at login. The program must
/// not be using them any more.
/// \return what could not be removed.
std::vector<std::filesystem::path> removeContainer(const xdg::Folders& folders, LoginItem& loginItem);

} // namespace glyma
