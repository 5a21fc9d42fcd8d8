#pragma once

#include <chrono>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace glyma {

/// A program started by a test; killed at the test's end when it still runs.
class Process {
public:
    /// \param environment  its whole environment.  \param output  file for what it writes to both its
    /// streams.
    Process(std::vector<std::string> words, const std::map<std::string, std::string>& environment,
            const std::filesystem::path& output);
    ~Process();
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    void signal(int number) const;
    bool isRunning();
    /// The exit status, 128 and the signal's number after a violent end, none when it still runs.
    std::optional<int> wait(std::chrono::milliseconds limit = std::chrono::seconds(10));

private:
    pid_t process_ = 0;
    std::optional<int> status_;
};

/// A session bus of the test's own.
class SessionBus {
public:
    explicit SessionBus(const std::filesystem::path& folder);
    const std::string& address() const { return address_; }

private:
    Process daemon_;
    std::string address_;
};

} // namespace glyma
