#pragma once

#include "platform/scheduler.h"

#include <map>
#include <utility>
#include <vector>

namespace glyma {

/// Jobs for later that end with their owner. Main thread.
class DelayedJobs {
public:
    explicit DelayedJobs(Scheduler& scheduler)
        : scheduler_(scheduler) {}

    void after(Milliseconds delay, std::function<void()> job) {
        for (const auto id : std::exchange(finished_, {}))
            waiting_.erase(id);
        const auto id = next_++;
        waiting_[id] = scheduler_.after(delay, [this, id, job = std::move(job)]() mutable {
            // Erased only later: the subscription must outlive the job that runs on it. What the job owns
            // ends with it.
            finished_.push_back(id);
            std::exchange(job, nullptr)();
        });
    }

private:
    Scheduler& scheduler_;
    std::map<unsigned long, Subscription> waiting_;
    std::vector<unsigned long> finished_;
    unsigned long next_ = 0;
};

} // namespace glyma
