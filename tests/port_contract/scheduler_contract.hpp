#pragma once

#include <gmock/gmock.h>

#include <atomic>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "orbinel/platform/scheduler.hpp"
#include "tests/port_contract/contract_support.hpp"

namespace orbinel::contract {

struct SchedulerUnderTest {
    std::shared_ptr<platform::Scheduler> scheduler;  // the only reference; its main thread is the test's
    Drive drive;
};

struct SchedulerContract : Contract<SchedulerUnderTest> {
    [[nodiscard]] bool settles(const std::function<bool()>& condition) const { return driveUntil(drive, condition); }

    std::shared_ptr<platform::Scheduler>& scheduler = made.scheduler;
    Drive drive = made.drive;
};

using std::chrono::milliseconds;

TEST_P(SchedulerContract, MainWorkRunsInOrderOnTheMainThreadAndNeverInsideThePost) {
    std::vector<std::string> ran;
    scheduler->postMain([&] {
        EXPECT_TRUE(scheduler->isMain());
        scheduler->postMain([&] { ran.push_back("posted by the first"); });
        ran.push_back("first");
    });
    scheduler->postMain([&] { ran.push_back("second"); });
    EXPECT_TRUE(scheduler->isMain());
    EXPECT_TRUE(ran.empty());

    ASSERT_TRUE(settles([&] { return ran.size() == 3; }));
    EXPECT_THAT(ran, testing::ElementsAre("first", "second", "posted by the first"));
}

TEST_P(SchedulerContract, WorkOfManyThreadsArrivesCompleteAndInEachThreadsOrder) {
    constexpr int perThread = 200;
    std::vector<std::vector<int>> arrived(4);
    std::size_t total = 0;
    std::vector<std::thread> posters;
    for (auto& list : arrived) {
        posters.emplace_back([this, &list, &total] {
            EXPECT_FALSE(scheduler->isMain());
            for (int i = 0; i < perThread; ++i) {
                scheduler->postMain([&list, &total, i] {
                    list.push_back(i);
                    ++total;
                });
            }
        });
    }
    EXPECT_TRUE(settles([&] { return total == arrived.size() * perThread; }));
    for (auto& poster : posters) poster.join();
    for (const auto& list : arrived) EXPECT_TRUE(std::is_sorted(list.begin(), list.end()));
}

TEST_P(SchedulerContract, DelayedWorkRunsOnceItsTimeHasComeTheEarlierFirst) {
    const double start = scheduler->now();
    std::vector<std::pair<int, double>> ran;
    std::vector<platform::Ticket> tickets;
    for (const int delay : {40, 5, 0, 20}) {
        tickets.push_back(scheduler->postMainAfter(milliseconds{delay}, [&ran, this, delay] {
            EXPECT_TRUE(scheduler->isMain());
            ran.emplace_back(delay, scheduler->now());
        }));
    }
    EXPECT_TRUE(ran.empty());
    ASSERT_TRUE(settles([&] { return ran.size() == 4; }));

    std::vector<int> order;
    for (const auto& [delay, at] : ran) {
        order.push_back(delay);
        // The wall clock may be corrected by a trifle while a monotonic one counts the delay.
        EXPECT_GE(at, start + delay / 1000.0 - 0.002);
    }
    EXPECT_THAT(order, testing::ElementsAre(0, 5, 20, 40));
}

TEST_P(SchedulerContract, DroppedTicketsStopTheirWorkAndDetachedOnesDoNot) {
    int dropped = 0;
    int detached = 0;
    bool droppedInside = false;
    platform::Ticket own;
    own = scheduler->postMainAfter(milliseconds{2}, [&] {
        own.cancel();
        droppedInside = true;
    });
    {
        auto ticket = scheduler->postMainAfter(milliseconds{2}, [&] { ++dropped; });
    }
    // Already due when the main thread drops it: even then it must not run.
    platform::Ticket late = scheduler->postMainAfter(milliseconds{0}, [&] { ++dropped; });
    scheduler->postMain([&late] { late.cancel(); });
    late.cancel();
    scheduler->postMainAfter(milliseconds{2}, [&] { ++detached; }).detach();
    bool end = false;
    const auto marker = scheduler->postMainAfter(milliseconds{10}, [&] { end = true; });

    ASSERT_TRUE(settles([&] { return end; }));
    EXPECT_EQ(dropped, 0);
    EXPECT_EQ(detached, 1);
    EXPECT_TRUE(droppedInside);
}

TEST_P(SchedulerContract, GlobalWorkRunsOffTheMainThread) {
    std::atomic<int> ran{0};
    std::atomic<int> onMain{0};
    const auto work = [&, main = std::this_thread::get_id()] {
        if (scheduler->isMain() || std::this_thread::get_id() == main) ++onMain;
        ++ran;
    };
    for (int i = 0; i < 50; ++i) scheduler->postGlobal(work);
    const auto kept = scheduler->postGlobalAfter(milliseconds{5}, work);
    std::atomic<bool> droppedRan{false};
    {
        auto dropped = scheduler->postGlobalAfter(milliseconds{5}, [&] { droppedRan = true; });
    }
    bool back = false;
    scheduler->postGlobal([&] { scheduler->postMain([&] { back = true; }); });

    ASSERT_TRUE(settles([&] { return ran == 51 && back; }));
    EXPECT_EQ(onMain, 0);
    EXPECT_FALSE(droppedRan);
}

TEST_P(SchedulerContract, RepeatedWorkTicksUntilItsTicketIsGoneAndNeverWithoutAPause) {
    int ticks = 0;
    int pauseless = 0;
    platform::Ticket ticket;
    ticket = scheduler->repeatOnMain(milliseconds{3}, [&] {
        EXPECT_TRUE(scheduler->isMain());
        if (++ticks == 3) ticket.cancel();
    });
    auto held = scheduler->repeatOnMain(milliseconds{0}, [&] { ++pauseless; });
    EXPECT_EQ(ticks, 0);
    ASSERT_TRUE(settles([&] { return ticks == 3 && pauseless >= 3; }));
    held.cancel();
    const int before = pauseless;
    drive(milliseconds{10});
    EXPECT_EQ(ticks, 3);
    EXPECT_EQ(pauseless, before);
}

TEST_P(SchedulerContract, EndingDropsWhatHasNotBegunAndTicketsMayOutliveIt) {
    const auto token = std::make_shared<int>(0);
    auto main = scheduler->postMainAfter(std::chrono::hours{1}, [token] { ++*token; });
    auto global = scheduler->postGlobalAfter(std::chrono::hours{1}, [token] { ++*token; });
    auto repeated = scheduler->repeatOnMain(std::chrono::hours{1}, [token] { ++*token; });
    scheduler->postMain([token] { ++*token; });
    scheduler.reset();

    EXPECT_EQ(*token, 0);
    main.cancel();
    global.cancel();
    repeated.cancel();
    EXPECT_EQ(token.use_count(), 1);
}

TEST_P(SchedulerContract, LocalTimeDropsFractionsOfAMillisecondAndHoldsTheYears) {
    const auto time = scheduler->localTime(1'767'225'630.257);
    EXPECT_EQ(time.millisecond, 257);
    EXPECT_EQ(time.second, 30);
    EXPECT_EQ(scheduler->localTime(-1e300).year, 1);
    EXPECT_EQ(scheduler->localTime(1e300).year, 9999);
    EXPECT_EQ(scheduler->localTime(1e300).month, 12);
}

}  // namespace orbinel::contract
