#pragma once

#include "catalogue/catalogue_texts.h"

#include <expected>
#include <filesystem>
#include <memory>
#include <mutex>
#include <string>

namespace glyma {

/// The texts of the characters without keywords, read when a background task first needs them. One object for
/// each loading of the index: what it holds never changes.
class LazyRest {
public:
    /// \param known  null when they are still to be read.
    LazyRest(std::filesystem::path storeFile, std::shared_ptr<const SearchSection> known)
        : storeFile_(std::move(storeFile))
        , section_(std::move(known)) {}

    /// May read the store, over a connection of its own, and waits while another thread does. Background
    /// threads. \return the store's error; the next call tries again.
    std::expected<std::shared_ptr<const SearchSection>, std::string> get();

    /// Reads everything anew, writes the image and keeps the rest of it. Background threads.
    void writeImage(const Popularity& popularity, const ResourceLocator& resources);

private:
    const std::filesystem::path storeFile_;
    std::mutex mutex_;
    std::shared_ptr<const SearchSection> section_;
};

} // namespace glyma
