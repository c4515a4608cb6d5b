#include "base/entrance.hpp"

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <thread>
#include <vector>

#include "base/visit.hpp"

namespace orbinel::testing {
namespace {

using namespace std::chrono_literals;

TEST(Entrances, LetInWhileOpenAndLeadToNoLaterWorld) {
    int first = 1;
    int second = 2;
    auto entrance = Entrance::claim();
    EXPECT_FALSE(Visit<int>(entrance.get()));
    entrance->open(&first);
    const LibraryPart<int> part{&first, entrance.get(), entrance->opening()};
    EXPECT_EQ(*Visit<int>(entrance.get()), 1);
    EXPECT_EQ(*Visit<int>(part), 1);
    entrance->close();
    EXPECT_FALSE(Visit<int>(part));
    auto* const used = entrance.get();
    entrance.reset();
    entrance = Entrance::claim();
    ASSERT_EQ(entrance.get(), used);
    entrance->open(&second);
    EXPECT_EQ(*Visit<int>(entrance.get()), 2);
    EXPECT_FALSE(Visit<int>(part)) << "an object of the earlier world";
    EXPECT_FALSE(Visit<int>(LibraryPart<int>()));
    entrance->close();
}

TEST(Entrances, WaitForVisitsOfOthersButNotForTheirOwn) {
    int target = 0;
    const auto entrance = Entrance::claim();
    entrance->open(&target);
    std::promise<void> entered;
    std::promise<void> leave;
    std::thread other([&] {
        const Visit<int> visit(entrance.get());
        entered.set_value();
        leave.get_future().wait();
    });
    entered.get_future().wait();
    {
        const Visit<int> own(entrance.get());
        entrance->close();
        EXPECT_FALSE(entrance->waitUntilLeft(1ms));
        std::thread releasing([&] { leave.set_value(); });
        EXPECT_TRUE(entrance->waitUntilLeft(10s));
        releasing.join();
    }
    other.join();
    bool left = false;
    entrance->whenLeft([&] { left = true; });
    EXPECT_TRUE(left);
}

// What a world is destroyed by: once, by the last one to leave, while others still knock.
TEST(Entrances, RunTheLastActionOnceAndAfterEveryVisit) {
    for (int round = 0; round < 300; ++round) {
        const auto entrance = Entrance::claim();
        auto target = std::make_unique<std::atomic<int>>(0);
        entrance->open(target.get());
        std::atomic<int> destroyed{0};
        std::vector<std::thread> visitors;
        for (int i = 0; i < 3; ++i) {
            visitors.emplace_back([&] {
                while (const Visit<std::atomic<int>> visit{entrance.get()}) ++*visit;
            });
        }
        entrance->close();
        entrance->whenLeft([&] {
            target.reset();
            ++destroyed;
        });
        for (auto& visitor : visitors) visitor.join();
        ASSERT_EQ(destroyed, 1);
    }
}

}  // namespace
}  // namespace orbinel::testing
