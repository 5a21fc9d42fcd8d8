#pragma once

#include "platform/scheduler.h"

#include <glib.h>

#include <atomic>
#include <functional>
#include <future>
#include <memory>
#include <optional>
#include <thread>
#include <utility>

namespace glyma::atspi {

/// The one thread that talks to the accessibility bus, with an event loop of its own so that neither Qt's nor
/// an application that hangs can hold up the other. Any thread may call; the end waits for the job that runs.
class Worker {
public:
    Worker();
    ~Worker();
    Worker(const Worker&) = delete;
    Worker& operator=(const Worker&) = delete;

    GMainContext* context() const { return context_.get(); }

    /// Runs the job after those before it and does not wait.
    void post(std::function<void()> job) const { post(context_.get(), std::move(job)); }
    void postAfter(Milliseconds delay, std::function<void()> job) const;
    static void post(GMainContext* context, std::function<void()> job);

    /// Whether somebody waits for a job that has not begun: what runs for nobody gives way.
    const std::atomic<bool>& isAwaited() const { return isAwaited_; }

    /// Runs the job and waits for its result, at most until the deadline. The job is told by the flag that
    /// nobody waits any more; when it had not begun by then, it never does.
    template<typename Result>
    std::optional<Result> call(Milliseconds deadline,
                               std::function<Result(const std::atomic<bool>&)> job) const {
        struct State {
            std::promise<Result> promise;
            std::atomic<bool> abandoned = false;
        };
        const auto state = std::make_shared<State>();
        auto future = state->promise.get_future();
        isAwaited_ = true;
        post([this, state, job = std::move(job)] {
            isAwaited_ = false;
            if (!state->abandoned)
                state->promise.set_value(job(state->abandoned));
        });
        if (future.wait_for(deadline) == std::future_status::ready)
            return future.get();
        state->abandoned = true;
        return std::nullopt;
    }

private:
    struct ContextRelease {
        void operator()(GMainContext* context) const { g_main_context_unref(context); }
    };
    struct LoopRelease {
        void operator()(GMainLoop* loop) const { g_main_loop_unref(loop); }
    };
    std::unique_ptr<GMainContext, ContextRelease> context_;
    std::unique_ptr<GMainLoop, LoopRelease> loop_;
    mutable std::atomic<bool> isAwaited_ = false;
    std::thread thread_;
};

} // namespace glyma::atspi
