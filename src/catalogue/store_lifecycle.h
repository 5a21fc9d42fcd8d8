#pragma once

#include "data/resources.h"
#include "data/store.h"
#include "platform/scheduler.h"
#include "platform/settings_store.h"
#include "preferences/log.h"

#include <expected>
#include <filesystem>
#include <string>

namespace glyma {

/// Where the store lives, when it has to be rebuilt, and how it is opened. One process at a time: the caller
/// holds the data folder's lock.
class StoreLifecycle {
public:
    /// \param dataFolder  the program's own data folder ($XDG_DATA_HOME/Glyma or GLYMA_DATA_DIR).
    /// \param settings    as the last holder of the lock left them.
    StoreLifecycle(std::filesystem::path dataFolder, const ResourceLocator& resources,
                   SettingsStore& settings, const WallClock& clock, Log& log);

    /// "Glyma.store" in the data folder; creates the folder.
    std::filesystem::path storeLocation() const;
    /// Schema version, importer version and the sizes of the reference files.
    std::string computeDataFingerprint() const;

    /// Opens the store, first taking over one of an earlier layout ("default.store" beside the data folder)
    /// and making room for a new one when the reference data or the schema have changed: what the user taught
    /// is written to a backup, which the import restores, and the store is deleted. Nothing taught is ever
    /// only in a deleted file: while no backup can be written the old store stays in use, and a store that
    /// cannot be used is kept as "Glyma.store.damaged-" and the time of its last change (UTC). The error is
    /// fatal for the program: it says what happened and what to do.
    std::expected<Store, std::string> makeContainer();
    using Done = std::expected<void, std::string>;
    /// Removes the store, its companions and what can be made again from them; all or, when the store cannot
    /// be removed, nothing.
    Done deleteStoreFiles() const;

private:
    void migrateLegacyStore() const;
    void makeRoomWhenDataChanged();
    Done makeRoom() const;
    /// \return whether there was a catalogue to save from.
    std::expected<bool, std::string> saveUserData() const;
    Done setAside() const;

    std::filesystem::path dataFolder_;
    const ResourceLocator& resources_;
    SettingsStore& settings_;
    const WallClock& clock_;
    Log& log_;
};

} // namespace glyma
