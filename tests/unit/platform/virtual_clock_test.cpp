#include "platform/simulated/virtual_clock.h"

#include <gmock/gmock.h>

#include <string>
#include <thread>

namespace glyma::simulated {
namespace {

using namespace std::chrono_literals;

TEST(VirtualClock, RunsEveryJobAtItsMomentInOrder) {
    VirtualClock clock;
    std::string order;
    const auto start = clock.now();
    const auto late = clock.after(20ms, [&] { order += "c"; });
    const auto early = clock.after(10ms, [&] {
        order += "b";
        EXPECT_EQ(clock.now() - start, 10ms);
        clock.post([&] { order += "p"; });
    });
    clock.post([&] { order += "a"; });
    EXPECT_EQ(order, "") << "nothing runs before time moves";
    clock.advance(19ms);
    EXPECT_EQ(order, "abp");
    clock.advance(1ms);
    EXPECT_EQ(order, "abpc");
}

TEST(VirtualClock, StopsATimerWhenItsOwnerLetsGo) {
    VirtualClock clock;
    int ticks = 0;
    Subscription timer = clock.every(10ms, [&] {
        if (++ticks == 3)
            timer.reset();
    });
    auto once = clock.after(5ms, [] { FAIL() << "cancelled"; });
    once.reset();
    clock.advance(200ms);
    EXPECT_EQ(ticks, 3);
}

TEST(VirtualClock, WhileTheMainThreadSleepsOnlyTheWorldGoesOn) {
    VirtualClock clock;
    std::string order;
    clock.schedule(30ms, [&] { order += "world "; });
    clock.run([&] { order += "task "; });
    clock.post([&] {
        clock.post([&] { order += "job "; });
        clock.sleep(50ms);
        order += "awake ";
    });
    clock.advance(1ms);
    EXPECT_EQ(order, "task world awake job ");
    EXPECT_EQ(clock.elapsed(), 50ms);
}

TEST(VirtualClock, AStalledMainQueueCatchesUpInOrder) {
    VirtualClock clock;
    std::string order;
    clock.stallMainQueue(100ms);
    clock.post([&] { order += "a"; });
    const auto timer = clock.after(40ms, [&] { order += "b"; });
    clock.schedule(60ms, [&] { order += "w"; });
    clock.advance(99ms);
    EXPECT_EQ(order, "w");
    clock.advance(1ms);
    EXPECT_EQ(order, "wab");
}

TEST(VirtualClock, TakesJobsFromOtherThreads) {
    VirtualClock clock;
    int jobs = 0;
    {
        std::jthread other([&] {
            for (int i = 0; i < 500; ++i)
                clock.post([&] { ++jobs; });
        });
        for (int i = 0; i < 50; ++i)
            clock.advance(1ms);
    }
    clock.advance(0ms);
    EXPECT_EQ(jobs, 500);
}

} // namespace
} // namespace glyma::simulated
