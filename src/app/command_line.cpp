#include "app/command_line.h"

#include <CLI/CLI.hpp>
#include <fmt/ranges.h>

#include <vector>

namespace glyma {

std::expected<Command, int> parseCommandLine(int argc, char** argv) {
    CLI::App app("Type any emoji, symbol or snippet into any application.\n"
                 "Without a command the program starts and sits in the tray.",
                 "glyma");
    app.set_version_flag("--version", "glyma " GLYMA_VERSION);
    app.require_subcommand(0, 1);

    SearchCommand search;
    std::vector<std::string> words;
    auto* searchCommand = app.add_subcommand("search", "Rank the characters and snippets that match");
    searchCommand->add_flag("--json", search.json, "Print an array of objects with the parts of each score");
    searchCommand->add_option("--limit", search.limit, "Print so many results at most")
        ->check(CLI::PositiveNumber);
    searchCommand->add_flag("--fuzzy", search.fuzzy, "Let letters be left out");
    searchCommand->add_option("QUERY", words, "What would be typed after the trigger")->required();

    InfoCommand info;
    std::vector<std::string> texts;
    auto* infoCommand = app.add_subcommand("info", "Tell what the characters of a text are");
    auto* asJson = infoCommand->add_flag("--json", info.json, "Print an array of objects");
    infoCommand->add_option("--limit", info.limit, "Tell of so many distinct characters at most")
        ->check(CLI::PositiveNumber);
    auto* selection = infoCommand->add_flag("--selection", info.selection,
                                            "Take what was selected last, in any application");
    infoCommand->add_flag("--panel", info.panel, "Let the running program show it in its window")
        ->excludes(asJson);
    infoCommand->add_option("TEXT", texts, "The text; without it, standard input is read")
        ->excludes(selection);

    ImportCommand import;
    auto* importCommand =
        app.add_subcommand("import", "Build the catalogue of characters, if there is none yet");
    importCommand->add_flag("--force", import.force, "Build it anew; what was learned stays");

    DoctorCommand doctor;
    auto* doctorCommand =
        app.add_subcommand("doctor", "Tell what works here, what does not, why and how to mend it");
    doctorCommand->add_flag("--json", doctor.json, "Print an array of objects");

    PreferencesCommand preferences;
    auto* preferencesCommand =
        app.add_subcommand("preferences", "Show the preferences; starts the program if it is not running");
    preferencesCommand->add_option("TAB", preferences.tab, "The page to show")
        ->transform(CLI::Transformer({{"library", "unicode"}}))
        ->check(CLI::IsMember(
            {"general", "exclusions", "unicode", "replacements", "permissions", "advanced", "debug"}));

    auto* quitCommand = app.add_subcommand("quit", "End the running program");

    auto* keepCommand = app.add_subcommand(keepClipboardCommand);
    keepCommand->group(""); // not shown

    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return std::unexpected(app.exit(error) == 0 ? status::done : status::wrongUse);
    }
    if (*searchCommand) {
        search.query = fmt::format("{}", fmt::join(words, " "));
        return search;
    }
    if (*infoCommand) {
        if (!texts.empty())
            info.text = fmt::format("{}", fmt::join(texts, " "));
        return info;
    }
    if (*importCommand)
        return import;
    if (*doctorCommand)
        return doctor;
    if (*preferencesCommand)
        return preferences;
    if (*quitCommand)
        return QuitCommand{};
    if (*keepCommand)
        return KeepClipboardCommand{};
    return RunCommand{};
}

} // namespace glyma
