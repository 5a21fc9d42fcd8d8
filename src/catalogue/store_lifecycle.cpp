#include "catalogue/store_lifecycle.h"

#include <fmt/chrono.h>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <array>
#include <chrono>
#include <cstdlib>
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
/// The store and its companions. The store goes first: a companion that a sudden end leaves behind belongs to
/// nothing.
constexpr std::array<std::string_view, 3> storeSuffixes{"", "-wal", "-shm"};

fs::path withSuffix(const fs::path& file, std::string_view suffix) {
    return file.string() + std::string(suffix);
}

/// The path with the user's home folder as "~".
std::string shortened(const fs::path& path) {
    const auto* const home = std::getenv("HOME");
    auto text = path.string();
    if (home == nullptr || *home == '\0' || !text.starts_with(std::string(home) + "/"))
        return text;
    return "~" + text.substr(std::string_view(home).size());
}

std::string lastChange(const fs::path& file) {
    std::error_code error;
    const auto written = fs::last_write_time(file, error);
    const auto time =
        error ? std::chrono::sys_seconds{}
              : std::chrono::floor<std::chrono::seconds>(std::chrono::file_clock::to_sys(written));
    return fmt::format("{:%Y-%m-%dT%H%M%S}", fmt::gmtime(std::chrono::system_clock::to_time_t(time)));
}

fs::path unusedName(const fs::path& file, std::string_view reason) {
    const auto base = fmt::format("{}.{}-{}", file.string(), reason, lastChange(file));
    auto name = base;
    for (int number = 2; fs::exists(name); ++number)
        name = fmt::format("{}-{}", base, number);
    return name;
}

} // namespace

StoreLifecycle::StoreLifecycle(std::filesystem::path dataFolder, const ResourceLocator& resources,
                               SettingsStore& settings, Log& log)
    : dataFolder_(std::move(dataFolder))
    , resources_(resources)
    , settings_(settings)
    , log_(log) {}

fs::path StoreLifecycle::storeLocation() const {
    std::error_code error;
    // What the user typed is in it.
    if (fs::create_directories(dataFolder_, error))
        fs::permissions(dataFolder_, fs::perms::owner_all, error);
    return dataFolder_ / "Glyma.store";
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
    makeRoomWhenDataChanged();
    const auto location = storeLocation();
    auto store = Store::open(location);
    if (!store && Store::isUnusable(location)) {
        log_.write(fmt::format("Glyma: ⚠️ the character store cannot be used — {}", store.error()));
        if (const auto kept = setAside("damaged"); !kept)
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

void StoreLifecycle::makeRoomWhenDataChanged() {
    const auto fingerprint = computeDataFingerprint();
    if (settings_.value(fingerprintKey) == nlohmann::json(fingerprint))
        return;
    // The fingerprint is stored once the old store is out of the way, so that an end in between changes
    // nothing.
    if (const auto kept = setAside("replaced"); kept)
        settings_.set(fingerprintKey, fingerprint);
    else
        log_.write(fmt::format("Glyma: ⚠️ the old catalogue stays in use — {}", kept.error()));
}

std::expected<void, std::string> StoreLifecycle::setAside(std::string_view reason) const {
    const auto location = storeLocation();
    try {
        const auto target = unusedName(location, reason);
        auto moved = false;
        for (const auto suffix : storeSuffixes) {
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

void StoreLifecycle::deleteStoreFiles() const {
    const auto location = storeLocation();
    std::error_code error;
    for (const auto suffix : storeSuffixes)
        fs::remove(withSuffix(location, suffix), error);
    fs::remove(Store::damageMark(location), error);
    log_.debug("Glyma: store files deleted at {}", shortened(dataFolder_ / "Glyma"));
}

} // namespace glyma
