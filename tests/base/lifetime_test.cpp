#include "base/lifetime.hpp"

#include <gtest/gtest.h>

#include <future>
#include <stdexcept>
#include <thread>

#include "base/ticket_box.hpp"
#include "orbinel/headless/headless_console.hpp"

namespace orbinel::testing {
namespace {

struct LifetimeTest : ::testing::Test {
    headless::HeadlessConsole console;
    Reports reports{console};
    Lifetime lifetime{reports};
};

TEST_F(LifetimeTest, RunsWorkOnlyBetweenBeginningAndEnd) {
    int ran = 0;
    auto work = lifetime.whileAlive([&](int by) { ran += by; });
    work(1);
    EXPECT_EQ(ran, 0);
    auto world = std::make_shared<int>(0);
    lifetime.begin(world);
    work(1);
    EXPECT_EQ(ran, 1);
    lifetime.whileAlive([] { throw std::runtime_error("caught"); })();
    Lifetime other(reports);
    auto otherWork = other.whileAlive([&] { ++ran; });
    other.begin(world);
    other.end();
    otherWork();
    world.reset();
    work(1);
    EXPECT_EQ(ran, 1);
}

TEST_F(LifetimeTest, WaitsForWorkOfOthersButNotForItsOwn) {
    const auto world = std::make_shared<int>(0);
    lifetime.begin(world);
    lifetime.whileAlive([&] { EXPECT_TRUE(lifetime.waitUntilQuiet(std::chrono::seconds(10))); })();
    std::promise<void> entered;
    std::promise<void> leave;
    std::thread other(lifetime.whileAlive([&] {
        entered.set_value();
        leave.get_future().wait();
    }));
    entered.get_future().wait();
    lifetime.end();
    EXPECT_FALSE(lifetime.waitUntilQuiet(std::chrono::milliseconds(1)));
    leave.set_value();
    EXPECT_TRUE(lifetime.waitUntilQuiet(std::chrono::seconds(10)));
    other.join();
}

// Whoever has waited is the last owner: a world must not be left to a thread that can only hand it to a queue which
// nobody runs any more.
TEST_F(LifetimeTest, GivesTheWorldBackBeforeTheWaitIsOver) {
    for (int round = 0; round < 200; ++round) {
        Lifetime current(reports);
        std::thread::id destroyedOn;
        std::shared_ptr<int> world(new int(0), [&](const int* last) {
            destroyedOn = std::this_thread::get_id();
            delete last;
        });
        current.begin(world);
        std::promise<void> entered;
        std::thread other(current.whileAlive([&] { entered.set_value(); }));
        entered.get_future().wait();
        current.end();
        ASSERT_TRUE(current.waitUntilQuiet(std::chrono::seconds(10)));
        world.reset();
        other.join();
        ASSERT_EQ(destroyedOn, std::this_thread::get_id());
    }
}

TEST(TicketBoxes, CancelEverythingThatHasNotEnded) {
    int cancelled = 0;
    const auto ticket = [&] { return platform::Ticket([&] { ++cancelled; }); };
    TicketBox box;
    const auto ended = box.open();
    box.keep(ended, ticket());
    box.close(ended);
    const auto endedBeforeKept = box.open();
    box.close(endedBeforeKept);
    box.keep(endedBeforeKept, ticket());
    EXPECT_EQ(cancelled, 0);
    box.keep(box.open(), ticket());
    box.cancelAll();
    EXPECT_EQ(cancelled, 1);
    box.keep(box.open(), ticket());
    EXPECT_EQ(cancelled, 2);
}

}  // namespace
}  // namespace orbinel::testing
