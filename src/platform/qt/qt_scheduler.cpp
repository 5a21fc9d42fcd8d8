#include "platform/qt/qt_scheduler.h"

#include <QPointer>
#include <QThread>
#include <QTimer>

#include <utility>

namespace glyma::qt {

namespace {

/// Below this a late timer would be felt; above it Qt may round so that several timers share one wake-up.
constexpr Milliseconds precisionWanted{1000};

} // namespace

void QtScheduler::post(std::function<void()> job) {
    QMetaObject::invokeMethod(&context_, std::move(job), Qt::QueuedConnection);
}

Subscription QtScheduler::after(Milliseconds delay, std::function<void()> job) {
    return startTimer(delay, true, std::move(job));
}

Subscription QtScheduler::every(Milliseconds interval, std::function<void()> job) {
    return startTimer(interval, false, std::move(job));
}

void QtScheduler::sleep(Milliseconds duration) {
    QThread::msleep(static_cast<unsigned long>(duration.count()));
}

Subscription QtScheduler::startTimer(Milliseconds interval, bool once, std::function<void()> job) {
    auto* timer = new QTimer(&context_);
    timer->setTimerType(interval < precisionWanted ? Qt::PreciseTimer : Qt::CoarseTimer);
    timer->setSingleShot(once);
    timer->setInterval(interval);
    // The job may cancel its own subscription: the timer is then deleted only once control is back in the
    // event loop, and the job, which belongs to the connection, with it.
    QObject::connect(timer, &QTimer::timeout, timer, [timer, once, job = std::move(job)] {
        if (once)
            timer->deleteLater();
        job();
    });
    timer->start();
    return Subscription([timer = QPointer(timer)] {
        if (timer) {
            timer->stop();
            timer->deleteLater();
        }
    });
}

QtTaskRunner::~QtTaskRunner() {
    pool_.clear();
    pool_.waitForDone();
}

void QtTaskRunner::run(std::function<void()> job) {
    pool_.start(std::move(job));
}

} // namespace glyma::qt
