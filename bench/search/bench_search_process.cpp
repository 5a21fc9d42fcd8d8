#include "catalogue/command_line_search.h"
#include "platform/simulated/services.h"
#include "sample_store.h"

#include <fmt/format.h>

#include <fstream>

/// The least program that searches from the command line, to be timed as a whole process, and the maker of
/// what it searches: `--make FOLDER` writes a data folder with Glyma.store and a list of the same entries,
/// one a line.

namespace {

int make(const std::filesystem::path& folder) {
    const auto store = glyma::bench::makeSampleStore(folder / "Glyma.store", GLYMA_SOURCE_DIR "/resources");
    std::ofstream list(folder / "list.txt");
    std::vector<std::int64_t> ids;
    const auto keyworded = store.visitKeyworded([&](const glyma::CharacterRow& row) {
        list << row.character << ' ' << row.name << ' ' << row.keywordsRaw << '\n';
    });
    const auto plain =
        store.visitWithoutKeywords([&](const glyma::CharacterRow& row) { ids.push_back(row.id); });
    const auto named = store.visitRows(
        ids, [&](const glyma::CharacterRow& row) { list << row.character << ' ' << row.name << '\n'; });
    return keyworded && plain && named ? 0 : 1;
}

int search(const std::filesystem::path& folder, std::string_view text) {
    const glyma::ResourceLocator resources(GLYMA_SOURCE_DIR "/resources");
    const glyma::simulated::SimulatedSettings settings;
    const auto rows = glyma::searchFromCommandLine(
        {folder / "Glyma.store", resources, settings, {}, std::chrono::system_clock::now()},
        {text, false, {}});
    if (!rows) {
        fmt::print(stderr, "{}\n", rows.error());
        return 1;
    }
    for (const auto& row : *rows)
        fmt::print("{}\t{}\t{}\n", row.character, row.name, row.ranking.total());
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 3)
        return 2;
    const std::string_view first = argv[1];
    return first == "--make" ? make(argv[2]) : search(first, argv[2]);
}
