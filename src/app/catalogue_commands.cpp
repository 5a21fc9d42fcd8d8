#include "app/catalogue_commands.h"

#include "app/font_coverage_loader.h"
#include "app/import_progress.h"
#include "app/search_output.h"
#include "app/terminal.h"
#include "catalogue/catalogue_files.h"
#include "catalogue/command_line_search.h"
#include "catalogue/import_pipeline.h"
#include "catalogue/store_lifecycle.h"

#include <fmt/format.h>

namespace glyma {

namespace fs = std::filesystem;

namespace {

using Lock = xdg::InstanceLock;

std::string lockProblem(Lock::Failure failure, const fs::path& folder) {
    if (failure == Lock::Failure::held)
        return "Glyma is running and looks after the catalogue itself; end it first with \"glyma quit\"";
    return fmt::format("the folder {} cannot be written to; check its permissions and the free space",
                       folder.string());
}

/// \return the figures; none when there was a catalogue already.
std::expected<std::optional<ImportSummary>, std::string> import(Foundation& foundation, bool force,
                                                                ImportProgress& progress) {
    StoreLifecycle lifecycle(foundation.folders.data, foundation.resources, foundation.settings,
                             foundation.clock, foundation.log);
    auto store = lifecycle.makeContainer();
    if (!store)
        return std::unexpected(store.error());
    const auto count = store->characterCount();
    if (!count)
        return std::unexpected(count.error());
    if (*count > 0 && !force)
        return std::nullopt;
    const auto fonts = loadFontCoverage(foundation.log);
    if (!fonts)
        return std::unexpected(fonts.error());
    const ImportPipeline pipeline{.resources = foundation.resources,
                                  .fonts = **fonts,
                                  .log = foundation.log,
                                  .progress = [&](std::string_view phase) { progress.show(phase); }};
    const auto imported = *count > 0 ? pipeline.rebuild(*store) : pipeline.run(*store);
    if (!imported)
        return std::unexpected(imported.error());
    return *imported;
}

} // namespace

int ensureCatalogue(Foundation& foundation) {
    if (hasCatalogue(storeFile(foundation.folders.data)))
        return status::done;
    const auto lock = foundation.lockCatalogue();
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
    const auto rows = searchFromCommandLine({.storeFile = storeFile(foundation.folders.data),
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
    const auto lock = foundation.lockCatalogue();
    if (!lock && lock.error() == Lock::Failure::held && !command.force &&
        hasCatalogue(storeFile(foundation.folders.data)))
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
