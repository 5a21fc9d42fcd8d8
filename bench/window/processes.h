#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace glyma::bench {

/// A child process, ended with the object.
class Process {
public:
    /// \param arguments  the program first.
    /// \param readyFd    the child gets the writing end of a pipe as this descriptor; readLine() gives what
    /// it writes.
    explicit Process(std::vector<std::string> arguments, int readyFd = -1);
    ~Process();
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    /// The first line that the child writes to its descriptor; empty when it ends without.
    std::string readLine();
    bool isRunning();
    pid_t id() const { return id_; }
    /// Proportional set size in megabytes; none when it cannot be read.
    std::optional<double> memory() const;
    /// How often its threads have gone to sleep so far: once more than they were woken.
    long sleeps() const;
    /// What all its threads have computed so far, those that have ended excepted.
    std::chrono::nanoseconds processorTime() const;

private:
    pid_t id_ = -1;
    int reader_ = -1;
};

/// A virtual display, a session bus and a window manager (when openbox is there) of our own, in the
/// environment.
class Session {
public:
    Session();

private:
    Process display_;
    std::string number_;
    Process bus_;
    std::optional<Process> windowManager_;
};

} // namespace glyma::bench
