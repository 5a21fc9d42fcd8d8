#include "catalogue/import_pipeline.h"
#include "catalogue/store_lifecycle.h"
#include "data/resources.h"
#include "platform/linux/fonts/fontconfig_coverage.h"
#include "preferences/debug_config.h"
#include "preferences/log.h"

#include <SQLiteCpp/SQLiteCpp.h>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <stdexcept>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

/// The whole import (real reference files, real fonts) against `sqlite3 .import` of the same rows, whole
/// processes that take turns.
namespace {

using namespace glyma;
namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

constexpr int rounds = 25;
constexpr double ratioLimit = 2.5;
constexpr double importLimitMilliseconds = 500;
constexpr std::array<const char*, 3> tables{"UnicodeChar", "UnicodeBlock", "TermSelection"};

struct NoSettings : SettingsStore {
    std::optional<nlohmann::json> value(std::string_view) const override { return std::nullopt; }
    void set(std::string_view, nlohmann::json) override {}
    void remove(std::string_view) override {}
};

struct NoLog : LogSink {
    void write(std::string_view) override {}
};

void import(const fs::path& folder) {
    NoSettings settings;
    NoLog sink;
    const DebugConfig debug(settings);
    Log log(sink, debug);
    const ResourceLocator resources(fs::path(GLYMA_SOURCE_DIR) / "resources");
    fonts::FontconfigCoverage coverage(log);
    StoreLifecycle lifecycle(folder, resources, settings, log);
    auto store = lifecycle.makeContainer();
    if (!store)
        throw std::runtime_error(store.error());
    const auto summary = ImportPipeline{resources, coverage, log, {}, {}}.run(*store);
    if (!summary)
        throw std::runtime_error(summary.error());
}

/// Runs the work in a child process, so that each run finds nothing warm but the disk.
double inProcess(const std::function<void()>& work) {
    const auto start = Clock::now();
    const auto child = fork();
    if (child == 0) {
        try {
            work();
            _exit(0);
        } catch (const std::exception& error) {
            fmt::print(stderr, "{}\n", error.what());
            _exit(1);
        }
    }
    auto status = 0;
    if (child < 0 || waitpid(child, &status, 0) != child || status != 0)
        throw std::runtime_error("a measured process failed");
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

/// What `sqlite3` runs: the tables as the store has them, without secondary indexes, and the rows as CSV.
void writeScript(const fs::path& store, const fs::path& folder) {
    SQLite::Database database(store.string());
    std::ofstream script(folder / "import.sql");
    script << "PRAGMA journal_mode = WAL;\nPRAGMA synchronous = NORMAL;\n";
    for (const auto* const table : tables) {
        const auto csv = folder / fmt::format("{}.csv", table);
        const auto dump =
            fmt::format("sqlite3 -csv '{}' 'SELECT * FROM {}' > '{}'", store.string(), table, csv.string());
        if (std::system(dump.c_str()) != 0)
            throw std::runtime_error("sqlite3 cannot be run: install the package sqlite3");
        script << database.execAndGet(fmt::format("SELECT sql FROM sqlite_master WHERE name = '{}'", table))
                      .getString()
               << ";\n.import --csv '" << csv.string() << "' " << table << '\n';
    }
}

void runSqlite(const fs::path& folder) {
    const auto database = (folder / "imported.db").string();
    const auto script = (folder / "import.sql").string();
    if (std::freopen(script.c_str(), "r", stdin) == nullptr ||
        std::freopen("/dev/null", "w", stdout) == nullptr)
        throw std::runtime_error("cannot redirect");
    execlp("sqlite3", "sqlite3", "-batch", database.c_str(), nullptr);
    throw std::runtime_error("sqlite3 cannot be run: install the package sqlite3");
}

void removeDatabase(const fs::path& folder, const std::string& name) {
    for (const auto* const suffix : {"", "-wal", "-shm"})
        fs::remove(folder / (name + suffix));
}

double percentile(std::vector<double> values, double part) {
    std::ranges::sort(values);
    return values[static_cast<std::size_t>(part * static_cast<double>(values.size() - 1))];
}

const char* verdict(bool isHeld) {
    return isHeld ? "ok" : "FAIL";
}

int measure(const fs::path& folder) {
    inProcess([&] { import(folder); });
    writeScript(folder / "Glyma.store", folder);
    std::vector<double> imports;
    std::vector<double> baselines;
    for (int round = 0; round < rounds; ++round) {
        removeDatabase(folder, "Glyma.store");
        imports.push_back(inProcess([&] { import(folder); }));
        removeDatabase(folder, "imported.db");
        baselines.push_back(inProcess([&] { runSqlite(folder); }));
    }
    const auto ratio = std::ranges::min(imports) / std::ranges::min(baselines);
    const auto slow = percentile(imports, 0.95);
    fmt::print("import_ms min {:.1f} median {:.1f} p95 {:.1f}\n", std::ranges::min(imports),
               percentile(imports, 0.5), slow);
    fmt::print("sqlite3_import_ms min {:.1f} median {:.1f} p95 {:.1f}\n", std::ranges::min(baselines),
               percentile(baselines, 0.5), percentile(baselines, 0.95));
    fmt::print("ratio import_vs_sqlite3_import {:.2f} {:.1f} {}\n", ratio, ratioLimit,
               verdict(ratio <= ratioLimit));
    fmt::print("sanity import_ms {:.1f} {:.0f} {}\n", slow, importLimitMilliseconds,
               verdict(slow <= importLimitMilliseconds));
    return ratio <= ratioLimit && slow <= importLimitMilliseconds ? 0 : 1;
}

} // namespace

int main() {
    auto pattern = (fs::temp_directory_path() / "glyma-bench-XXXXXX").string();
    const fs::path folder = mkdtemp(pattern.data());
    auto status = 1;
    try {
        status = measure(folder);
    } catch (const std::exception& error) {
        fmt::print(stderr, "bench_import: {}\n", error.what());
    }
    fs::remove_all(folder);
    return status;
}
