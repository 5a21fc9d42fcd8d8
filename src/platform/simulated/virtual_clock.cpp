#include "platform/simulated/virtual_clock.h"

#include <algorithm>
#include <memory>

namespace glyma::simulated {

void VirtualClock::add(Lane lane, Duration due, std::function<void()> job) {
    auto& jobs = lane == Lane::world ? world_ : mainQueue_;
    jobs.emplace(std::pair(due, sequence_++), std::move(job));
}

void VirtualClock::post(std::function<void()> job) {
    const std::lock_guard lock(mutex_);
    add(Lane::mainQueue, elapsed_ + (isInTask() ? taskDelay_ : Duration{0}), std::move(job));
}

Subscription VirtualClock::after(Milliseconds delay, std::function<void()> job) {
    const auto alive = std::make_shared<bool>(true);
    const std::lock_guard lock(mutex_);
    add(Lane::mainQueue, elapsed_ + delay, [weak = std::weak_ptr(alive), job = std::move(job)] {
        if (const auto stillAlive = weak.lock(); stillAlive && *stillAlive)
            job();
    });
    return Subscription([alive] { *alive = false; });
}

Subscription VirtualClock::every(Milliseconds interval, std::function<void()> job) {
    const auto alive = std::make_shared<bool>(true);
    repeat(interval, [weak = std::weak_ptr(alive), job = std::move(job)] {
        const auto isAlive = [&weak] {
            const auto stillAlive = weak.lock();
            return stillAlive && *stillAlive;
        };
        if (isAlive())
            job();
        return isAlive();
    });
    return Subscription([alive] { *alive = false; });
}

void VirtualClock::repeat(Milliseconds interval, std::function<bool()> job) {
    const std::lock_guard lock(mutex_);
    add(Lane::mainQueue, elapsed_ + interval, [this, interval, job = std::move(job)] {
        if (job())
            repeat(interval, job);
    });
}

void VirtualClock::run(std::function<void()> job) {
    const std::lock_guard lock(mutex_);
    add(Lane::world, elapsed_ + taskDuration_, [this, job = std::move(job)] {
        {
            const std::lock_guard beginning(mutex_);
            taskThread_ = std::this_thread::get_id();
            taskDelay_ = Duration{0};
        }
        job();
        const std::lock_guard ending(mutex_);
        taskThread_.reset();
    });
}

void VirtualClock::schedule(Duration delay, std::function<void()> job) {
    const std::lock_guard lock(mutex_);
    add(Lane::world, elapsed_ + delay, std::move(job));
}

VirtualClock::Duration VirtualClock::mainQueueDue() const {
    return mainQueue_.empty() ? Duration::max() : std::max(mainQueue_.begin()->first.first, mainQueueFreeAt_);
}

bool VirtualClock::runNext(Duration until, bool mainQueueToo) {
    std::function<void()> job;
    {
        const std::lock_guard lock(mutex_);
        const auto worldDue = world_.empty() ? Duration::max() : world_.begin()->first.first;
        const auto mainDue = mainQueueToo ? mainQueueDue() : Duration::max();
        const auto due = std::min(worldDue, mainDue);
        if (due > until)
            return false;
        auto& jobs = worldDue <= mainDue ? world_ : mainQueue_;
        job = std::move(jobs.begin()->second);
        jobs.erase(jobs.begin());
        elapsed_ = std::max(elapsed_, due);
    }
    job();
    return true;
}

void VirtualClock::advance(Duration duration) {
    const auto until = elapsed() + duration;
    while (runNext(until, true)) {
    }
    const std::lock_guard lock(mutex_);
    elapsed_ = std::max(elapsed_, until);
}

void VirtualClock::sleep(Milliseconds duration) {
    {
        const std::lock_guard lock(mutex_);
        if (isInTask()) {
            taskDelay_ += duration;
            return;
        }
    }
    const auto until = elapsed() + duration;
    while (runNext(until, false)) {
    }
    const std::lock_guard lock(mutex_);
    elapsed_ = std::max(elapsed_, until);
}

void VirtualClock::stallMainQueue(Duration duration) {
    const std::lock_guard lock(mutex_);
    mainQueueFreeAt_ = elapsed_ + duration;
}

void VirtualClock::setTaskDuration(Duration duration) {
    const std::lock_guard lock(mutex_);
    taskDuration_ = duration;
}

void VirtualClock::setWallClock(Timestamp time) {
    const std::lock_guard lock(mutex_);
    start_ = time - std::chrono::duration_cast<Timestamp::duration>(elapsed_);
}

Timestamp VirtualClock::now() const {
    const std::lock_guard lock(mutex_);
    return start_ + std::chrono::duration_cast<Timestamp::duration>(elapsed_);
}

VirtualClock::Duration VirtualClock::elapsed() const {
    const std::lock_guard lock(mutex_);
    return elapsed_;
}

} // namespace glyma::simulated
