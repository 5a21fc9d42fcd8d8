#pragma once

#include "platform/subscription.h"

#include <chrono>
#include <functional>

namespace glyma {

using Timestamp = std::chrono::system_clock::time_point;
using Milliseconds = std::chrono::milliseconds;

/// The main queue: work that must run on the main thread, now, later or repeatedly. The only source of
/// delayed work and of sleep, so that tests can own the clock.
class Scheduler {
public:
    virtual ~Scheduler() = default;

    /// Runs the job on the main thread, after the jobs posted before it. Any thread.
    virtual void post(std::function<void()> job) = 0;
    /// Runs the job once, after the delay. Main thread. Destroying the result cancels it.
    [[nodiscard]] virtual Subscription after(Milliseconds delay, std::function<void()> job) = 0;
    /// Runs the job every interval, first after one interval. Main thread. Destroying the result ends it.
    [[nodiscard]] virtual Subscription every(Milliseconds interval, std::function<void()> job) = 0;
    /// Blocks the calling (main) thread; no job runs meanwhile.
    virtual void sleep(Milliseconds duration) = 0;
};

/// What time it is for the user. Any thread.
class WallClock {
public:
    virtual ~WallClock() = default;
    virtual Timestamp now() const = 0;
};

/// Runs work away from the main thread.
class TaskRunner {
public:
    virtual ~TaskRunner() = default;
    /// Runs the job on a background thread, some time after the call. Any thread. Jobs may run in parallel.
    virtual void run(std::function<void()> job) = 0;
};

} // namespace glyma
