#include "platform/linux/xdg/json_settings_store.h"

#include "platform/linux/xdg/file_descriptor.h"
#include "platform/linux/xdg/files.h"

#include <fmt/chrono.h>
#include <fmt/format.h>

#include <chrono>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace glyma::xdg {

namespace fs = std::filesystem;
using nlohmann::json;

namespace {

constexpr std::size_t sizeLimit = 64 * 1024 * 1024;

/// What a settings file holds, or why it cannot be used.
struct Reading {
    json settings = json::object();
    std::string problem;
    /// The problem lies in the file, not in the moment: another attempt would end the same.
    bool damaged = false;
};

bool liesInTheFile(std::error_code error) {
    return error == std::errc::permission_denied || error == std::errc::invalid_argument ||
           error == std::errc::file_too_large || error == std::errc::too_many_symbolic_link_levels;
}

Reading readSettings(const fs::path& file) {
    const auto contents = readFile(file, sizeLimit);
    if (!contents) {
        if (contents.error() == std::errc::no_such_file_or_directory)
            return {};
        return {.problem = contents.error().message(), .damaged = liesInTheFile(contents.error())};
    }
    if (contents->empty())
        return {};
    auto parsed = json::parse(*contents, nullptr, /*allow_exceptions=*/false);
    if (parsed.is_discarded())
        return {.problem = "it is not JSON", .damaged = true};
    if (!parsed.is_object())
        return {.problem = "it is not a JSON object", .damaged = true};
    return {.settings = std::move(parsed), .problem = {}};
}

void applyChange(json& settings, const std::string& key, const std::optional<json>& value) {
    if (value)
        settings[key] = *value;
    else
        settings.erase(key);
}

fs::path resolved(const fs::path& file) {
    std::error_code error;
    if (!fs::is_symlink(file, error))
        return file;
    const auto target = fs::weakly_canonical(file, error);
    return error ? file : target;
}

/// Keeps other processes of the program out while one reads, changes and replaces the file. Where the file
/// system has no locks, the change is made without.
FileDescriptor lockFolder(const fs::path& folder) {
    FileDescriptor descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (descriptor)
        ::flock(descriptor.number(), LOCK_EX);
    return descriptor;
}

std::error_code setAside(const fs::path& file) {
    const auto seconds = std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
    const auto stem = fmt::format("{}.damaged-{:%Y%m%dT%H%M%S}", file.string(), fmt::gmtime(seconds));
    auto place = stem;
    std::error_code error;
    for (int number = 2; fs::exists(fs::symlink_status(place, error)); ++number)
        place = fmt::format("{}-{}", stem, number);
    fs::rename(file, place, error);
    return error;
}

} // namespace

JsonSettingsStore::JsonSettingsStore(const fs::path& folder, LogSink& log)
    : file_(folder / "settings.json")
    , log_(log) {
    auto reading = readSettings(file_);
    settings_ = std::move(reading.settings);
    readProblem_ = std::move(reading.problem);
    if (!readProblem_.empty())
        log_.write(fmt::format(
            "Glyma: ⚠️ every setting is at its default, and the file will be set aside when a "
            "setting changes: reading {} failed — {}",
            file_.string(), readProblem_));
}

std::optional<json> JsonSettingsStore::value(std::string_view key) const {
    const std::lock_guard lock(mutex_);
    const auto place = settings_.find(key);
    return place != settings_.end() ? std::optional<json>(*place) : std::nullopt;
}

void JsonSettingsStore::set(std::string_view key, json value) {
    apply(key, std::move(value));
}

void JsonSettingsStore::remove(std::string_view key) {
    apply(key, std::nullopt);
}

void JsonSettingsStore::readAgain() {
    const std::lock_guard lock(mutex_);
    auto reading = readSettings(file_);
    if (!reading.problem.empty())
        return;
    for (const auto& [key, value] : unwritten_)
        applyChange(reading.settings, key, value);
    settings_ = std::move(reading.settings);
    readProblem_.clear();
}

std::string JsonSettingsStore::problem() const {
    const std::lock_guard lock(mutex_);
    return writeProblem_.empty() ? readProblem_ : writeProblem_;
}

void JsonSettingsStore::apply(std::string_view key, std::optional<json> value) {
    const std::lock_guard lock(mutex_);
    applyChange(settings_, std::string(key), value);
    unwritten_.insert_or_assign(std::string(key), std::move(value));
    const auto written = write();
    const auto before = std::exchange(writeProblem_, written ? std::string() : written.error());
    if (!written && before.empty())
        log_.write(fmt::format(
            "Glyma: ⚠️ what is set now is forgotten when the program ends, unless a later change can "
            "be written: writing {} failed — {}",
            file_.string(), written.error()));
}

std::expected<void, std::string> JsonSettingsStore::write() {
    if (const auto made = makePrivateFolder(file_.parent_path()); !made)
        return std::unexpected(made.error().message());
    const auto lock = lockFolder(file_.parent_path());
    const auto target = resolved(file_);
    auto onDisk = readSettings(target);
    if (!onDisk.problem.empty() && !onDisk.damaged)
        return std::unexpected(onDisk.problem);
    if (onDisk.damaged)
        if (const auto error = setAside(target))
            return std::unexpected(error.message());
    for (const auto& [key, value] : unwritten_)
        applyChange(onDisk.settings, key, value);
    const auto text = onDisk.settings.dump(2, ' ', false, json::error_handler_t::replace) + "\n";
    if (const auto replaced = replaceFile(target, text, 0600); !replaced)
        return std::unexpected(replaced.error().message());
    settings_ = std::move(onDisk.settings);
    unwritten_.clear();
    readProblem_.clear();
    return {};
}

} // namespace glyma::xdg
