#pragma once

#include "platform/scheduler.h"

#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

namespace glyma::simulated {

/// Time that only tests move, and everything that happens in it: the main queue, background tasks and what
/// the rest of the world (applications, other people's windows) does on its own.
///
/// Jobs run on the thread that calls advance(), each at its own moment, in the order of their moments. post()
/// and run() may be called from any thread.
class VirtualClock : public Scheduler, public WallClock, public TaskRunner {
public:
    using Duration = std::chrono::microseconds;

    void post(std::function<void()> job) override;
    [[nodiscard]] Subscription after(Milliseconds delay, std::function<void()> job) override;
    [[nodiscard]] Subscription every(Milliseconds interval, std::function<void()> job) override;
    /// Time passes for the world and the background tasks; the main queue waits. In a background task only
    /// what the task posts comes later.
    void sleep(Milliseconds duration) override;
    Timestamp now() const override;
    void run(std::function<void()> job) override;

    /// Lets time pass and everything that falls due happen.
    void advance(Duration duration);
    /// Nothing on the main queue runs before this much time has passed.
    void stallMainQueue(Duration duration);
    /// Something that happens in the world whatever our main thread does.
    void schedule(Duration delay, std::function<void()> job);
    /// How long a background task takes; 1 ms unless set.
    void setTaskDuration(Duration duration);
    void setWallClock(Timestamp time);
    /// Since the clock was made.
    Duration elapsed() const;

private:
    enum class Lane { world, mainQueue };
    using Jobs = std::map<std::pair<Duration, std::uint64_t>, std::function<void()>>;

    void add(Lane lane, Duration due, std::function<void()> job);
    /// Runs the next job due until then, if there is one.
    bool runNext(Duration until, bool mainQueueToo);
    void repeat(Milliseconds interval, std::function<bool()> job);
    bool isInTask() const { return taskThread_ == std::this_thread::get_id(); }
    Duration mainQueueDue() const;

    mutable std::mutex mutex_;
    Duration elapsed_{0};
    Duration mainQueueFreeAt_{0};
    Duration taskDuration_{1000};
    Timestamp start_{std::chrono::seconds(1'714'564'800)};
    std::uint64_t sequence_ = 0;
    std::optional<std::thread::id> taskThread_; ///< while a background task runs
    Duration taskDelay_{0};                     ///< how long it has slept
    Jobs world_;
    Jobs mainQueue_;
};

} // namespace glyma::simulated
