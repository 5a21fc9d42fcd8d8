#include "processes.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <signal.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace glyma::bench {

namespace {

using namespace std::chrono_literals;

constexpr int announcement = 3; // descriptor

std::string announced(Process& process, const char* what) {
    auto line = process.readLine();
    if (line.empty()) {
        std::fprintf(stderr, "bench_window: %s did not start\n", what);
        std::exit(1);
    }
    return line;
}

} // namespace

Process::Process(std::vector<std::string> arguments, int readyFd) {
    int ends[2] = {-1, -1};
    if (readyFd >= 0 && pipe2(ends, O_CLOEXEC) != 0)
        return;
    reader_ = ends[0];
    id_ = fork();
    if (id_ == 0) {
        if (readyFd >= 0)
            dup2(ends[1], readyFd);
        const int nowhere = open("/dev/null", O_WRONLY);
        dup2(nowhere, STDOUT_FILENO);
        if (!std::getenv("GLYMA_BENCH_VERBOSE"))
            dup2(nowhere, STDERR_FILENO);
        std::vector<char*> words;
        for (auto& argument : arguments)
            words.push_back(argument.data());
        words.push_back(nullptr);
        execvp(words[0], words.data());
        _exit(127);
    }
    if (ends[1] >= 0)
        close(ends[1]);
}

Process::~Process() {
    if (reader_ >= 0)
        close(reader_);
    if (id_ <= 0)
        return;
    kill(id_, SIGTERM);
    for (int attempt = 0; attempt < 200; ++attempt) {
        if (waitpid(id_, nullptr, WNOHANG) != 0)
            return;
        std::this_thread::sleep_for(10ms);
    }
    kill(id_, SIGKILL);
    waitpid(id_, nullptr, 0);
}

std::string Process::readLine() {
    std::string line;
    char letter = 0;
    while (read(reader_, &letter, 1) == 1 && letter != '\n')
        line += letter;
    return line;
}

bool Process::isRunning() {
    if (id_ > 0 && waitpid(id_, nullptr, WNOHANG) != 0)
        id_ = -1;
    return id_ > 0;
}

std::optional<double> Process::memory() const {
    std::ifstream rollup("/proc/" + std::to_string(id_) + "/smaps_rollup");
    for (std::string word; rollup >> word;)
        if (double kilobytes = 0; word == "Pss:" && rollup >> kilobytes)
            return kilobytes / 1024;
    return std::nullopt;
}

long Process::sleeps() const {
    long count = 0;
    for (const auto& thread : std::filesystem::directory_iterator("/proc/" + std::to_string(id_) + "/task")) {
        std::ifstream status(thread.path() / "status");
        for (std::string word; status >> word;)
            if (long switches = 0; word == "voluntary_ctxt_switches:" && status >> switches)
                count += switches;
    }
    return count;
}

std::chrono::nanoseconds Process::processorTime() const {
    std::chrono::nanoseconds sum{};
    for (const auto& thread : std::filesystem::directory_iterator("/proc/" + std::to_string(id_) + "/task"))
        // https://docs.kernel.org/scheduler/sched-stats.html: time on a processor comes first.
        if (long long nanoseconds = 0; std::ifstream(thread.path() / "schedstat") >> nanoseconds)
            sum += std::chrono::nanoseconds(nanoseconds);
    return sum;
}

Session::Session()
    : display_({"Xvfb", "-displayfd", std::to_string(announcement), "-screen", "0", "1280x800x24", "-noreset",
                "-nolisten", "tcp"},
               announcement)
    , number_(announced(display_, "Xvfb"))
    , bus_({"dbus-daemon", "--session", "--nofork", "--print-address=" + std::to_string(announcement)},
           announcement) {
    setenv("DISPLAY", (":" + number_).c_str(), 1);
    setenv("DBUS_SESSION_BUS_ADDRESS", announced(bus_, "dbus-daemon").c_str(), 1);
    setenv("QT_QPA_PLATFORM", "xcb", 1);
    for (const char* name : {"WAYLAND_DISPLAY", "QT_SCALE_FACTOR", "QT_QPA_PLATFORMTHEME"})
        unsetenv(name);
    windowManager_.emplace(std::vector<std::string>{"openbox", "--sm-disable"});
    std::this_thread::sleep_for(700ms);
}

} // namespace glyma::bench
