#pragma once

#include "platform/scheduler.h"

#include <QObject>
#include <QThreadPool>

namespace glyma::qt {

/// The main queue over Qt's event loop. Make it on the main thread, after the application object. What is
/// still waiting when it is destroyed never runs.
class QtScheduler : public Scheduler {
public:
    void post(std::function<void()> job) override;
    [[nodiscard]] Subscription after(Milliseconds delay, std::function<void()> job) override;
    [[nodiscard]] Subscription every(Milliseconds interval, std::function<void()> job) override;
    void sleep(Milliseconds duration) override;

private:
    Subscription startTimer(Milliseconds interval, bool once, std::function<void()> job);

    QObject context_;
};

/// Background work on a thread pool of its own. Its end waits for the jobs that run; those not begun are
/// dropped.
class QtTaskRunner : public TaskRunner {
public:
    ~QtTaskRunner() override;
    void run(std::function<void()> job) override;

private:
    QThreadPool pool_;
};

} // namespace glyma::qt
