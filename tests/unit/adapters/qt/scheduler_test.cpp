#include "platform/qt/qt_scheduler.h"
#include "platform/qt/qt_screens.h"
#include "qt_fixture.h"

#include <atomic>
#include <thread>
#include <vector>

namespace glyma::qt {
namespace {

class QtSchedulerTest : public QtTest {
protected:
    QtScheduler scheduler;
};

TEST_F(QtSchedulerTest, RunsPostedJobsInOrderOnTheMainThread) {
    std::vector<int> order;
    std::thread other([&] {
        for (int index = 0; index < 100; ++index)
            scheduler.post([&, index] {
                EXPECT_EQ(QThread::currentThread(), qApp->thread());
                order.push_back(index);
            });
    });
    other.join();
    EXPECT_TRUE(order.empty());
    spin(20ms);
    ASSERT_EQ(order.size(), 100U);
    EXPECT_TRUE(std::ranges::is_sorted(order));
}

TEST_F(QtSchedulerTest, RunsDelayedJobsOnceAndOnTime) {
    int runs = 0;
    std::chrono::steady_clock::time_point ranAt;
    const auto start = std::chrono::steady_clock::now();
    const auto subscription = scheduler.after(50ms, [&] {
        ++runs;
        ranAt = std::chrono::steady_clock::now();
    });
    spin(200ms);
    EXPECT_EQ(runs, 1);
    EXPECT_GE(ranAt - start, 49ms);
    EXPECT_LT(ranAt - start, 100ms);
}

TEST_F(QtSchedulerTest, RunsNothingThatWasCancelled) {
    int runs = 0;
    {
        const auto cancelled = scheduler.after(10ms, [&] { ++runs; });
    }
    Subscription outlivesItsScheduler;
    {
        QtScheduler shortLived;
        shortLived.post([&] { ++runs; });
        outlivesItsScheduler = shortLived.after(10ms, [&] { ++runs; });
    }
    spin(50ms);
    EXPECT_EQ(runs, 0);
}

TEST_F(QtSchedulerTest, LetsAJobEndItself) {
    int runs = 0;
    auto witness = std::make_shared<int>(7);
    Subscription subscription;
    subscription = scheduler.every(5ms, [&, witness] {
        if (++runs == 3)
            subscription.reset();
        EXPECT_EQ(*witness, 7);
    });
    EXPECT_TRUE(spinUntil([&] { return runs == 3; }));
    spin(50ms);
    EXPECT_EQ(runs, 3);
    EXPECT_EQ(witness.use_count(), 1);
}

TEST_F(QtSchedulerTest, WaitsForBackgroundJobsAtTheEnd) {
    std::atomic<bool> finished = false;
    {
        std::atomic<bool> begun = false;
        QtTaskRunner runner;
        runner.run([&] {
            begun = true;
            std::this_thread::sleep_for(50ms);
            finished = true;
        });
        while (!begun)
            std::this_thread::yield();
    }
    EXPECT_TRUE(finished);
}

TEST_F(QtSchedulerTest, FindsTheScreenAndThePointer) {
    const auto screens = QtScreens().all();
    ASSERT_EQ(screens.size(), 1U);
    EXPECT_EQ(screens.front(), (Screen{{0, 0, 1280, 800}, {0, 0, 1280, 800}, 1}));
    QCursor::setPos(300, 200);
    spin(20ms);
    EXPECT_EQ(QtScreens().pointerLocation(), (Point{300, 200}));
}

TEST(QtScreensTest, CountsInDevicePixelsFromTheScreensOwnCorner) {
    // Left a screen of 3840 by 2160 with scale 2, right of it one of 1920 by 1080 with scale 1.5.
    EXPECT_EQ(deviceRect({0, 0, 1920, 1080}, {0, 0}, 2), (Rect{0, 0, 3840, 2160}));
    EXPECT_EQ(deviceRect({0, 30, 1920, 1050}, {0, 0}, 2), (Rect{0, 60, 3840, 2100}));
    EXPECT_EQ(deviceRect({3840, 20, 1280, 700}, {3840, 0}, 1.5), (Rect{3840, 30, 1920, 1050}));
    EXPECT_EQ(devicePoint({3940, 100}, {3840, 0}, 1.5), (Point{3990, 150}));
}

} // namespace
} // namespace glyma::qt
