#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

/// What the catalogue keeps in the data folder, by name.
namespace glyma {

/// "Glyma.store" in the data folder.
std::filesystem::path storeFile(const std::filesystem::path& dataFolder);
/// The files of the store that there can be: itself, SQLite's companions, the mark of damage. The store comes
/// first: a companion that a sudden end leaves behind belongs to nothing.
std::vector<std::filesystem::path> storeFiles(const std::filesystem::path& dataFolder);
/// The backups of the user's data that there are, in no order.
std::vector<std::filesystem::path> userDataBackups(const std::filesystem::path& dataFolder);
/// The search image and what unfinished writes of it, and of backups, have left.
std::vector<std::filesystem::path> replaceableFiles(const std::filesystem::path& dataFolder);
/// Everything in the folder that was made from the reference files or learned from the user: the store and
/// its companions, stores that were set aside, the search image, the backups, unfinished writes of these.
/// Nothing else: no settings, no lock, no file that the program has not made.
std::vector<std::filesystem::path> catalogueFiles(const std::filesystem::path& dataFolder);

/// Deletes what is there of the files.
/// \return those that could not be deleted.
std::vector<std::filesystem::path> removeFiles(const std::vector<std::filesystem::path>& files);
/// For "delete everything": removes catalogueFiles(). A program that has the store open must end then.
/// \return those that could not be deleted.
std::vector<std::filesystem::path> deleteCatalogue(const std::filesystem::path& dataFolder);

/// The path with the user's home folder as "~", for messages.
std::string shortened(const std::filesystem::path& path);

} // namespace glyma
