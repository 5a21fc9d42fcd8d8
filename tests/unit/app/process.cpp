#include "process.h"

#include <csignal>
#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace glyma {

namespace {

std::vector<char*> pointers(std::vector<std::string>& words) {
    std::vector<char*> result;
    for (auto& word : words)
        result.push_back(word.data());
    result.push_back(nullptr);
    return result;
}

} // namespace

Process::Process(std::vector<std::string> words, const std::map<std::string, std::string>& environment,
                 const std::filesystem::path& output) {
    std::vector<std::string> variables;
    for (const auto& [name, value] : environment)
        variables.push_back(name + "=" + value);
    auto arguments = pointers(words);
    auto surroundings = pointers(variables);
    process_ = ::fork();
    if (process_ != 0)
        return;
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    const int file = ::open(output.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    ::dup2(file, STDOUT_FILENO);
    ::dup2(file, STDERR_FILENO);
    ::execvpe(arguments[0], arguments.data(), surroundings.data());
    ::_exit(127);
}

Process::~Process() {
    if (!isRunning())
        return;
    ::kill(process_, SIGKILL);
    ::waitpid(process_, nullptr, 0);
}

void Process::signal(int number) const {
    ::kill(process_, number);
}

bool Process::isRunning() {
    int status = 0;
    if (!status_ && ::waitpid(process_, &status, WNOHANG) == process_)
        status_ = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    return !status_;
}

std::optional<int> Process::wait(std::chrono::milliseconds limit) {
    const auto end = std::chrono::steady_clock::now() + limit;
    while (isRunning() && std::chrono::steady_clock::now() < end)
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    return status_;
}

SessionBus::SessionBus(const std::filesystem::path& folder)
    : daemon_({"dbus-daemon", "--session", "--nofork", "--nopidfile", "--print-address=1",
               "--address=unix:path=" + (folder / "bus").string()},
              {{"PATH", "/usr/bin:/bin"}, {"HOME", folder.string()}, {"XDG_RUNTIME_DIR", folder.string()}},
              folder / "bus-address") {
    for (int attempt = 0; attempt < 400 && !std::filesystem::exists(folder / "bus"); ++attempt)
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    address_ = "unix:path=" + (folder / "bus").string();
}

} // namespace glyma
