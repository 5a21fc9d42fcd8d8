#include "app/catalogue_commands.h"

#include "app/font_coverage_loader.h"
#include "app/import_progress.h"
#include "app/learned_data.h"
#include "app/search_output.h"
#include "app/terminal.h"
#include "catalogue/command_line_search.h"
#include "catalogue/import_pipeline.h"
#include "catalogue/store_lifecycle.h"
#include "platform/linux/xdg/instance_lock.h"

#include <fmt/format.h>

namespace glyma {

namespace fs = std::filesystem;

namespace {

using Lock = xdg::InstanceLock;
using Imported = std::expected<ImportSummary, std::string>;

std::string lockProblem(Lock::Failure failure, const fs::path& folder) {
    if (failure == Lock::Failure::held)
        return "Glyma is running and looks after the catalogue itself; end it first with \"glyma quit\"";
    return fmt::format("the folder {} cannot be written to; check its permissions and the free space",
                       folder.string());
}

Imported fillStore(Store& store, Foundation& foundation, ImportProgress& progress) {
    const auto fonts = loadFontCoverage(foundation.log);
    if (!fonts)
        return std::unexpected(fonts.error());
    const ImportPipeline pipeline{.resources = foundation.resources,
                                  .fonts = **fonts,
                                  .log = foundation.log,
                                  .progress = [&](std::string_view phase) { progress.show(phase); },
                                  .restore = {}};
    return pipeline.run(store);
}

/// Builds the catalogue beside the old one, so that nothing is lost when that fails or is interrupted.
Imported rebuild(StoreLifecycle& lifecycle, Store old, Foundation& foundation, ImportProgress& progress) {
    const auto place = lifecycle.storeLocation();
    const auto scratch = place.parent_path() / "rebuilt";
    std::error_code error;
    fs::remove_all(scratch, error);
    fs::create_directory(scratch, error);
    Imported imported = std::unexpected("nothing was imported");
    {
        auto fresh = Store::open(scratch / place.filename());
        if (!fresh)
            return std::unexpected(fresh.error());
        imported = fillStore(*fresh, foundation, progress);
        if (!imported)
            return imported;
        if (const auto carried = carryLearnedDataOver(old, *fresh); !carried)
            return std::unexpected(carried.error());
    }
    { const auto closed = std::move(old); }
    lifecycle.deleteStoreFiles();
    fs::rename(scratch / place.filename(), place, error);
    if (error)
        return std::unexpected(
            fmt::format("the new catalogue cannot be moved from {}: {}", scratch.string(), error.message()));
    fs::remove_all(scratch, error);
    return imported;
}

/// \return the figures; none when there was a catalogue already.
std::expected<std::optional<ImportSummary>, std::string> import(Foundation& foundation, bool force,
                                                                ImportProgress& progress) {
    StoreLifecycle lifecycle(foundation.folders.data, foundation.resources, foundation.settings,
                             foundation.log);
    auto store = lifecycle.makeContainer();
    if (!store)
        return std::unexpected(store.error());
    const auto count = store->characterCount();
    if (!count)
        return std::unexpected(count.error());
    if (*count > 0 && !force)
        return std::nullopt;
    const auto imported = *count > 0 ? rebuild(lifecycle, std::move(*store), foundation, progress)
                                     : fillStore(*store, foundation, progress);
    if (!imported)
        return std::unexpected(imported.error());
    return *imported;
}

} // namespace

fs::path storeFile(const Foundation& foundation) {
    return foundation.folders.data / "Glyma.store";
}

int ensureCatalogue(Foundation& foundation) {
    if (hasCatalogue(storeFile(foundation)))
        return status::done;
    const auto lock = Lock::acquire(foundation.folders.data);
    if (!lock && lock.error() == Lock::Failure::held)
        return fail("the catalogue is being built just now; try again in a moment");
    if (!lock)
        return fail(lockProblem(lock.error(), foundation.folders.data));
    ImportProgress progress(stderr, ImportProgress::Manner::barOnly);
    const auto imported = import(foundation, /*force=*/false, progress);
    return imported ? status::done : fail(imported.error());
}

int runSearch(const SearchCommand& command, Foundation& foundation) {
    if (const int ready = ensureCatalogue(foundation); ready != status::done)
        return ready;
    const auto& preferences = foundation.preferences;
    const auto replacements = preferences.userReplacements();
    const auto rows = searchFromCommandLine({.storeFile = storeFile(foundation),
                                             .resources = foundation.resources,
                                             .settings = foundation.settings,
                                             .replacements = replacements,
                                             .now = foundation.clock.now()},
                                            {.text = command.query,
                                             .fuzzy = command.fuzzy || preferences.useFuzzySearch(),
                                             .limit = command.limit});
    if (!rows)
        return fail(rows.error());
    return print(command.json ? searchResultsAsJson(*rows)
                              : searchResultsAsText(*rows, terminalWidth(stdout)));
}

int runImport(const ImportCommand& command, Foundation& foundation) {
    const auto lock = Lock::acquire(foundation.folders.data);
    if (!lock && lock.error() == Lock::Failure::held && !command.force && hasCatalogue(storeFile(foundation)))
        return print("The catalogue is there already.\n");
    if (!lock)
        return fail(lockProblem(lock.error(), foundation.folders.data));
    std::expected<std::optional<ImportSummary>, std::string> imported;
    {
        ImportProgress progress(stdout, ImportProgress::Manner::linesToo);
        imported = import(foundation, command.force, progress);
    }
    if (!imported)
        return fail(imported.error());
    if (!*imported)
        return print("The catalogue is there already; --force builds it anew.\n");
    return print(fmt::format("{} characters in {} blocks\n", (*imported)->characters, (*imported)->blocks));
}

} // namespace glyma
