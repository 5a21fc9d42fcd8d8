#pragma once

#include <cstddef>
#include <expected>
#include <optional>
#include <string>
#include <variant>

namespace glyma {

/// What the user asked for.
struct RunCommand {};
struct SearchCommand {
    std::string query;
    bool json = false;
    bool fuzzy = false;
    std::optional<std::size_t> limit;
};
struct InfoCommand {
    std::optional<std::string> text; ///< absent: standard input, or the selection
    bool json = false;
    bool selection = false; ///< what was selected last, in any application
    bool panel = false;     ///< shown by the running program instead of printed
    std::size_t limit = 24;
};
struct ImportCommand {
    bool force = false;
};
struct DoctorCommand {
    bool json = false;
};
struct PreferencesCommand {
    std::string tab; ///< empty: the one shown last
};
struct QuitCommand {};
/// Not for people: the program itself starts it when it ends.
struct KeepClipboardCommand {};
inline constexpr const char* keepClipboardCommand = "keep-clipboard";
using Command = std::variant<RunCommand, SearchCommand, InfoCommand, ImportCommand, DoctorCommand,
                             PreferencesCommand, QuitCommand, KeepClipboardCommand>;

/// Exit status of the program.
namespace status {
inline constexpr int done = 0;
inline constexpr int failed = 1; ///< the reason is on standard error
inline constexpr int wrongUse = 2;
} // namespace status

/// \return the command, or the exit status after help, version or a complaint has been printed.
std::expected<Command, int> parseCommandLine(int argc, char** argv);

} // namespace glyma
