#include "platform/linux/xdg/proc_processes.h"

#include "platform/linux/xdg/files.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <string_view>
#include <unistd.h>

namespace glyma::xdg {

namespace {

/// The kernel cuts a process's name off here.
constexpr std::size_t shortNameLength = 15;

/// The programs that lock X11 sessions.
constexpr std::array<std::string_view, 14> lockers{"cinnamon-screensaver",
                                                   "gnome-screensaver",
                                                   "i3lock",
                                                   "kscreenlocker_greet",
                                                   "light-locker",
                                                   "mate-screensaver",
                                                   "physlock",
                                                   "slock",
                                                   "sxlock",
                                                   "xfce4-screensaver",
                                                   "xlock",
                                                   "xscreensaver",
                                                   "xscreensaver-auth",
                                                   "xsecurelock"};

bool isLockerName(std::string_view name) {
    return std::ranges::any_of(
        lockers, [&](std::string_view locker) { return locker.substr(0, shortNameLength) == name; });
}

std::string shortName(const std::filesystem::path& folder) {
    constexpr std::size_t limit = 256;
    auto name = readFile(folder / "comm", limit).value_or("");
    if (name.ends_with('\n'))
        name.pop_back();
    return name;
}

/// The whole of a name that was cut off, from the file of the program, which a script or another user's
/// process does not tell.
std::string wholeName(const std::string& name, const std::filesystem::path& folder) {
    if (name.size() < shortNameLength)
        return name;
    std::error_code error;
    const auto program = std::filesystem::read_symlink(folder / "exe", error).filename().string();
    return program.starts_with(name) ? program : name;
}

} // namespace

ProcessFacts ProcProcesses::facts(pid_t process) const {
    const bool mayBeSignalled = ::kill(process, 0) == 0;
    const bool isForeign = !mayBeSignalled && errno == EPERM;
    if (!mayBeSignalled && !isForeign)
        return {};
    const auto folder = std::filesystem::path("/proc") / std::to_string(process);
    const auto name = shortName(folder);
    return {.exists = true,
            .isForeign = isForeign,
            .isLocker = isLockerName(name),
            .name = nameFor(wholeName(name, folder))};
}

std::string ProcProcesses::nameFor(const std::string& program) const {
    const auto application = applications_.findByProgram(program);
    return application && !application->name.empty() ? application->name : program;
}

pid_t ProcProcesses::own() const {
    return ::getpid();
}

} // namespace glyma::xdg
