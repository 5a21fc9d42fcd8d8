#pragma once

#include "platform/scheduler.h"

#include <functional>
#include <mutex>
#include <vector>

namespace glyma::x11::testing {

/// A main queue that runs when told.
class MainQueue : public Scheduler {
public:
    void post(std::function<void()> job) override {
        const std::scoped_lock lock(mutex_);
        jobs_.push_back(std::move(job));
    }
    Subscription after(Milliseconds, std::function<void()>) override { return {}; }
    Subscription every(Milliseconds, std::function<void()>) override { return {}; }
    void sleep(Milliseconds) override {}
    void run() {
        std::vector<std::function<void()>> due;
        {
            const std::scoped_lock lock(mutex_);
            due.swap(jobs_);
        }
        for (const auto& job : due)
            job();
    }

private:
    std::mutex mutex_;
    std::vector<std::function<void()>> jobs_;
};

} // namespace glyma::x11::testing
