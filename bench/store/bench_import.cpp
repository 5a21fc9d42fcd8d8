#include <SQLiteCpp/SQLiteCpp.h>
#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

/// `glyma import` (real reference files, real fonts) against `sqlite3 .import` of the same rows, whole
/// processes that take turns.
///     bench_import GLYMA
namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

constexpr int rounds = 40;
constexpr double ratioLimit = 2.5;
constexpr double importLimitMilliseconds = 500;
constexpr std::array<const char*, 3> tables{"UnicodeChar", "UnicodeBlock", "TermSelection"};

/// Runs a program with a file as its input. \return milliseconds.
double run(const std::vector<std::string>& command, const fs::path& input) {
    const auto start = Clock::now();
    const auto child = fork();
    if (child == 0) {
        std::vector<char*> words;
        for (const auto& word : command)
            words.push_back(const_cast<char*>(word.c_str()));
        words.push_back(nullptr);
        if (std::freopen(input.c_str(), "r", stdin) && std::freopen("/dev/null", "w", stdout))
            execvp(words[0], words.data());
        _exit(127);
    }
    auto status = 0;
    if (child < 0 || waitpid(child, &status, 0) != child || status != 0)
        throw std::runtime_error(command.front() + " failed");
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

int measure(const std::string& program, const fs::path& folder) {
    setenv("GLYMA_DATA_DIR", folder.c_str(), 1);
    setenv("GLYMA_CONFIG_DIR", folder.c_str(), 1);
    const auto import = [&] { return run({program, "import"}, "/dev/null"); };
    const auto importWithSqlite = [&] {
        return run({"sqlite3", "-batch", folder / "imported.db"}, folder / "import.sql");
    };
    import();
    writeScript(folder / "Glyma.store", folder);
    std::vector<double> imports;
    std::vector<double> baselines;
    std::vector<double> empties;
    for (int round = 0; round < rounds; ++round) {
        removeDatabase(folder, "Glyma.store");
        imports.push_back(import());
        removeDatabase(folder, "imported.db");
        baselines.push_back(importWithSqlite());
        empties.push_back(run({"true"}, "/dev/null"));
    }
    const auto empty = std::ranges::min(empties);
    const auto ratio = (std::ranges::min(imports) - empty) / (std::ranges::min(baselines) - empty);
    const auto slow = percentile(imports, 0.95);
    fmt::print("import_ms min {:.1f} median {:.1f} p95 {:.1f}\n", std::ranges::min(imports),
               percentile(imports, 0.5), slow);
    fmt::print("sqlite3_import_ms min {:.1f} median {:.1f} p95 {:.1f}\n", std::ranges::min(baselines),
               percentile(baselines, 0.5), percentile(baselines, 0.95));
    fmt::print("ratio import_vs_sqlite3_import {:.2f} {:.1f} {}\n", ratio, ratioLimit,
               verdict(ratio <= ratioLimit));
    fmt::print("sanity import_ms_p95 {:.1f} {:.0f} {}\n", slow, importLimitMilliseconds,
               verdict(slow <= importLimitMilliseconds));
    return ratio <= ratioLimit && slow <= importLimitMilliseconds ? 0 : 1;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2)
        return 2;
    auto pattern = (fs::temp_directory_path() / "glyma-bench-XXXXXX").string();
    const fs::path folder = mkdtemp(pattern.data());
    auto status = 1;
    try {
        status = measure(argv[1], folder);
    } catch (const std::exception& error) {
        fmt::print(stderr, "bench_import: {}\n", error.what());
    }
    fs::remove_all(folder);
    return status;
}
