#include "app/core_diagnosis.h"

#include "app/font_coverage_loader.h"
#include "catalogue/catalogue_files.h"
#include "data/store.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <array>
#include <utility>

namespace glyma {

namespace {

using State = Diagnosis::State;

Diagnosis diagnoseSettings(const Foundation& foundation) {
    const auto file = foundation.settings.file().string();
    const auto problem = foundation.settings.problem();
    if (problem.empty())
        return {.name = "settings", .state = State::ok, .why = file, .mend = {}};
    return {
        .name = "settings",
        .state = State::limited,
        .why = fmt::format("{}: {}; every setting is at its default", file, problem),
        .mend =
            "Mend or remove the file; at the next change of a setting it is set aside under another name."};
}

Diagnosis diagnoseResources(const Foundation& foundation) {
    constexpr std::array<std::pair<const char*, const char*>, 5> files{{{"Blocks", "txt"},
                                                                        {"UnicodeData", "txt"},
                                                                        {"annotations", "json"},
                                                                        {"emoji-popularity", "json"},
                                                                        {"Unikemet", "txt"}}};
    std::vector<std::string> absent;
    for (const auto& [name, extension] : files)
        if (!foundation.resources.find(name, extension))
            absent.push_back(fmt::format("{}.{}", name, extension));
    const auto folder = foundation.resources.folder().string();
    if (absent.empty())
        return {.name = "reference files", .state = State::ok, .why = folder, .mend = {}};
    return {.name = "reference files",
            .state = State::missing,
            .why = fmt::format("{} not in {}", fmt::join(absent, ", "), folder),
            .mend = "Install the program again, or set GLYMA_RESOURCE_DIR to the folder that has them."};
}

Diagnosis diagnoseStore(const Foundation& foundation) {
    const auto file = storeFile(foundation.folders.data);
    std::error_code error;
    if (!std::filesystem::exists(file, error))
        return {.name = "catalogue",
                .state = State::limited,
                .why = "there is none yet: it is built at the first start",
                .mend = "Start the program, or build it with \"glyma import\"."};
    const auto store = Store::open(file);
    const auto count =
        store ? store->characterCount() : Store::Result<std::int64_t>(std::unexpected(store.error()));
    if (!count)
        return {.name = "catalogue",
                .state = State::missing,
                .why = fmt::format("{}: {}", file.string(), count.error()),
                .mend = "Check the folder's permissions and the free space. A damaged catalogue is set aside "
                        "and built "
                        "anew when the program starts."};
    return {.name = "catalogue",
            .state = *count > 0 ? State::ok : State::limited,
            .why = fmt::format("{} characters in {}", *count, file.string()),
            .mend = *count > 0 ? "" : "Build it with \"glyma import\"."};
}

Diagnosis diagnoseEmojiFont(Foundation& foundation) {
    const auto fonts = loadFontCoverage(foundation.log);
    if (!fonts)
        return {.name = "emoji font",
                .state = State::missing,
                .why = fonts.error(),
                .mend = "Install the program again, with the libraries fontconfig and HarfBuzz."};
    if ((*fonts)->canDraw("\U0001F604"))
        return {.name = "emoji font",
                .state = State::ok,
                .why = "an installed font draws \U0001F604",
                .mend = {}};
    return {.name = "emoji font",
            .state = State::limited,
            .why = "no installed font draws \U0001F604",
            .mend = "Install a colour emoji font (package fonts-noto-color-emoji), then run \"glyma import "
                    "--force\"."};
}

} // namespace

std::vector<Diagnosis> diagnoseCore(Foundation& foundation) {
    return {diagnoseSettings(foundation), diagnoseResources(foundation), diagnoseStore(foundation),
            diagnoseEmojiFont(foundation)};
}

} // namespace glyma
