#pragma once

#include <gmock/gmock.h>

#include <atomic>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "orbinel/platform/notification_centre.hpp"
#include "tests/port_contract/contract_support.hpp"

namespace orbinel::contract {

struct NotificationCentreContract : Contract<std::shared_ptr<platform::NotificationCentre>> {
    [[nodiscard]] platform::Ticket record(const char* name, const std::string& as) {
        return centre->addObserver(name, [this, as](const Dictionary&) { told.push_back(as); });
    }

    std::shared_ptr<platform::NotificationCentre>& centre = made;
    std::vector<std::string> told;
};

TEST_P(NotificationCentreContract, TellsTheObserversOfTheNameInTheirOrderInsideThePost) {
    Dictionary seen;
    const auto thread = std::this_thread::get_id();
    const auto first = centre->addObserver("a", [&](const Dictionary& info) {
        EXPECT_EQ(std::this_thread::get_id(), thread);
        seen = info;
        told.push_back("first");
    });
    const auto second = record("a", "second");
    const auto other = record("A", "other");
    auto third = record("a", "third");
    centre->post("a", {{"height", 300}});
    EXPECT_THAT(told, testing::ElementsAre("first", "second", "third"));
    EXPECT_EQ(seen, (Dictionary{{"height", 300}}));

    told.clear();
    third.cancel();
    centre->post("a", {});
    EXPECT_THAT(told, testing::ElementsAre("first", "second"));
}

TEST_P(NotificationCentreContract, ObserversMayChangeAnythingDuringAPost) {
    platform::Ticket itself;
    platform::Ticket later;
    platform::Ticket added;
    itself = centre->addObserver("a", [&](const Dictionary&) {
        told.push_back("itself");
        added = record("a", "added");
        later.cancel();
        itself.cancel();
        centre->post("b", {});
    });
    const auto nested = record("b", "nested");
    later = record("a", "later");
    const auto last = record("a", "last");
    centre->post("a", {});
    EXPECT_THAT(told, testing::ElementsAre("itself", "nested", "last"));
    told.clear();
    centre->post("a", {});
    EXPECT_THAT(told, testing::ElementsAre("last", "added"));
}

TEST_P(NotificationCentreContract, TicketsMayOutliveItAndReleaseTheirObserver) {
    const auto token = std::make_shared<int>(0);
    auto dropped = centre->addObserver("a", [token](const Dictionary&) {});
    dropped.cancel();
    EXPECT_EQ(token.use_count(), 1);
    auto ticket = centre->addObserver("a", [token](const Dictionary&) {});
    centre.reset();
    ticket.cancel();
    EXPECT_EQ(token.use_count(), 1);
}

TEST_P(NotificationCentreContract, ThreadsMayObserveAndPostAtOnce) {
    std::atomic<int> kept{0};
    const auto keeper = centre->addObserver("a", [&](const Dictionary&) { ++kept; });
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            for (int n = 0; n < 100; ++n) {
                const auto passing = centre->addObserver("a", [](const Dictionary&) {});
                centre->post("a", {});
            }
        });
    }
    for (auto& thread : threads) thread.join();
    EXPECT_EQ(kept, 400);
}

}  // namespace orbinel::contract
