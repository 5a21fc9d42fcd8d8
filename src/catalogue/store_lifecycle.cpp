#include "catalogue/store_lifecycle.h"

#include "catalogue/catalogue_files.h"
#include "catalogue/user_data_files.h"

#include <fmt/chrono.h>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <array>
#include <chrono>
#include <string_view>
#include <system_error>
#include <utility>

namespace glyma {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view fingerprintKey = "glymaDataFingerprint";
/// Goes up whenever the import makes something else of the same files.
constexpr int importerVersion = 2;
constexpr std::array<std::pair<std::string_view, std::string_view>, 5> referenceFiles{{
    {"Blocks", "txt"},
    {"UnicodeData", "txt"},
    {"annotations", "json"},
    {"emoji-popularity", "json"},
    {"Unikemet", "txt"},
}};

fs::path withSuffix(const fs::path& file, std::string_view suffix) {
    return file.string() + std::string(suffix);
}

std::string lastChange(const fs::path& file) {
    std::error_code error;
    const auto written = fs::last_write_time(file, error);
    const auto time =
        error ? std::chrono::sys_seconds{}
              : std::chrono::floor<std::chrono::seconds>(std::chrono::file_clock::to_sys(written));
    return fmt::format("{:%Y-%m-%dT%H%M%S}", fmt::gmtime(std::chrono::system_clock::to_time_t(time)));
}

fs::path nameAside(const fs::path& file) {
    const auto base = fmt::format("{}.damaged-{}", file.string(), lastChange(file));
    auto name = base;
    for (int number = 2; fs::exists(name); ++number)
        name = fmt::format("{}-{}", base, number);
    return name;
}

} // namespace

StoreLifecycle::StoreLifecycle(std::filesystem::path dataFolder, const ResourceLocator& resources,
                               SettingsStore& settings, const WallClock& clock, Log& log)
    : dataFolder_(std::move(dataFolder))
    , resources_(resources)
    , settings_(settings)
    , clock_(clock)
    , log_(log) {}

fs::path StoreLifecycle::storeLocation() const {
    std::error_code error;
    // What the user typed is in it.
    if (fs::create_directories(dataFolder_, error))
        fs::permissions(dataFolder_, fs::perms::owner_all, error);
    return storeFile(dataFolder_);
}

std::string StoreLifecycle::computeDataFingerprint() const {
    auto fingerprint = fmt::format("schema:{}|importer:{}", Store::currentSchemaVersion, importerVersion);
    for (const auto& [name, extension] : referenceFiles) {
        const auto file = resources_.find(name, extension);
        if (!file)
            continue;
        std::error_code error;
        const auto size = fs::file_size(*file, error);
        if (!error)
            fingerprint += fmt::format("|{}.{}:{}", name, extension, size);
    }
    return fingerprint;
}

std::expected<Store, std::string> StoreLifecycle::makeContainer() {
    const auto location = storeLocation();
    migrateLegacyStore();
    makeRoomWhenDataChanged();
    auto store = Store::open(location);
    if (!store && Store::isUnusable(location)) {
        log_.write(fmt::format("Glyma: ⚠️ the character store cannot be used — {}", store.error()));
        if (const auto kept = setAside(); !kept)
            return std::unexpected(kept.error());
        store = Store::open(location);
    }
    if (!store) {
        log_.debug("Glyma: failed to create ModelContainer — {}", store.error());
        return std::unexpected(
            fmt::format("The character store cannot be opened: {}. Check that the folder can be "
                        "written to and that the disk is not full, then start again.",
                        store.error()));
    }
    return store;
}

void StoreLifecycle::migrateLegacyStore() const {
    const auto location = storeFile(dataFolder_);
    const auto folder = location.lexically_normal().parent_path();
    const auto legacy = folder.parent_path() / "default.store";
    std::error_code error;
    // Other programs may have a file of so plain a name.
    if (fs::exists(location, error) || !Store::isStore(legacy))
        return;
    // The store goes last: after a sudden end the next start goes on from there.
    for (const auto* suffix : {"-wal", "-shm", ""}) {
        const auto file = withSuffix(legacy, suffix);
        if (!fs::exists(file, error))
            continue;
        fs::rename(file, withSuffix(location, suffix), error);
        if (error) {
            log_.debug("Glyma: legacy store migration failed for .store{} — {}", suffix, error.message());
            return;
        }
    }
    log_.debug("Glyma: migrated store from {} to {}", shortened(legacy), shortened(location));
}

void StoreLifecycle::makeRoomWhenDataChanged() {
    const auto fingerprint = computeDataFingerprint();
    if (settings_.value(fingerprintKey) == nlohmann::json(fingerprint))
        return;
    log_.debug("Glyma: data fingerprint changed — deleting store for reimport");
    // The fingerprint is stored once the old store is out of the way, so that an end in between changes
    // nothing.
    if (const auto made = makeRoom(); made)
        settings_.set(fingerprintKey, fingerprint);
    else
        log_.write(fmt::format("Glyma: ⚠️ the old catalogue stays in use — {}", made.error()));
}

StoreLifecycle::Done StoreLifecycle::makeRoom() const {
    const auto location = storeFile(dataFolder_);
    std::error_code error;
    if (!fs::exists(fs::symlink_status(location, error)))
        return deleteStoreFiles();
    const auto hadCatalogue = saveUserData();
    if (hadCatalogue)
        return *hadCatalogue ? deleteStoreFiles() : Done();
    log_.debug("Glyma: ⚠️ user data export failed — {}; keeping previous backup (if any)",
               hadCatalogue.error());
    return Store::isUnusable(location) ? setAside() : std::unexpected(hadCatalogue.error());
}

std::expected<bool, std::string> StoreLifecycle::saveUserData() const {
    const auto store = Store::open(storeFile(dataFolder_));
    if (!store)
        return std::unexpected(store.error());
    const auto count = store->characterCount();
    if (!count)
        return std::unexpected(count.error());
    // An import that never ended. What was taught is in the newest backup, and that must stay the newest.
    if (*count == 0)
        return false;
    if (const auto exported = exportUserDataBackup(*store, clock_.now(), log_); !exported)
        return std::unexpected(exported.error());
    return true;
}

StoreLifecycle::Done StoreLifecycle::setAside() const {
    const auto location = storeFile(dataFolder_);
    try {
        const auto target = nameAside(location);
        auto moved = false;
        for (const auto* suffix : {"", "-wal", "-shm"}) {
            const auto source = withSuffix(location, suffix);
            if (!fs::exists(fs::symlink_status(source)))
                continue;
            fs::rename(source, withSuffix(target, suffix));
            moved = true;
        }
        fs::remove(Store::damageMark(location));
        if (moved)
            log_.write(fmt::format("Glyma: the previous character store is kept as {}", shortened(target)));
        return {};
    } catch (const fs::filesystem_error& error) {
        return std::unexpected(
            fmt::format("The character store {} cannot be set aside to make room for a new one: {}. "
                        "Check that the folder can be written to, then start again.",
                        location.string(), error.code().message()));
    }
}

StoreLifecycle::Done StoreLifecycle::deleteStoreFiles() const {
    // While the store is there its companions are part of it.
    if (!removeFiles({storeFile(dataFolder_)}).empty())
        return std::unexpected(fmt::format("{} cannot be deleted", shortened(storeFile(dataFolder_))));
    (void)removeFiles(storeFiles(dataFolder_));
    (void)removeFiles(replaceableFiles(dataFolder_));
    log_.debug("Glyma: store files deleted at {}", shortened(dataFolder_ / "Glyma"));
    return {};
}

} // namespace glyma
