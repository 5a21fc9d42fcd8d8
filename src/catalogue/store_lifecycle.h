#pragma once

#include "data/resources.h"
#include "data/store.h"
#include "platform/settings_store.h"
#include "preferences/log.h"

#include <expected>
#include <filesystem>
#include <string>
#include <string_view>

namespace glyma {

/// Where the store lives, when it has to be rebuilt, and how it is opened.
class StoreLifecycle {
public:
    /// \param dataFolder  the program's own data folder ($XDG_DATA_HOME/Glyma or GLYMA_DATA_DIR).
    StoreLifecycle(std::filesystem::path dataFolder, const ResourceLocator& resources,
                   SettingsStore& settings, Log& log);

    /// "Glyma.store" in the data folder; creates the folder.
    std::filesystem::path storeLocation() const;
    /// Schema version, importer version and the sizes of the reference files.
    std::string computeDataFingerprint() const;

    /// Opens the store, first making room for a new one when the reference data or the schema have changed,
    /// and setting a file that is no usable store aside. What the user taught an old store is in it: it is
    /// kept under another name, "Glyma.store.replaced-" or "Glyma.store.damaged-" and the time of its last
    /// change (UTC). The error is fatal for the program: it says what happened and what to do.
    std::expected<Store, std::string> makeContainer();
    /// Removes the store and its companions.
    void deleteStoreFiles() const;

private:
    void makeRoomWhenDataChanged();
    std::expected<void, std::string> setAside(std::string_view reason) const;

    std::filesystem::path dataFolder_;
    const ResourceLocator& resources_;
    SettingsStore& settings_;
    Log& log_;
};

} // namespace glyma
