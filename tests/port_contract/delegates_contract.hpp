#pragma once

#include <gmock/gmock.h>

#include <memory>
#include <string>
#include <vector>

#include "orbinel/platform/application.hpp"
#include "orbinel/platform/notifications.hpp"
#include "tests/port_contract/contract_support.hpp"

namespace orbinel::contract {

/// The services that keep delegates.
struct DelegatesUnderTest {
    std::shared_ptr<platform::Application> application;
    std::shared_ptr<platform::Notifications> notifications;
};

struct DelegatesContract : Contract<DelegatesUnderTest> {
    using DelegatePointer = std::shared_ptr<platform::Delegate>;

    static DelegatePointer makeDelegate(const char* name) {
        return std::make_shared<platform::Delegate>(std::make_shared<platform::DelegateClass>(name));
    }
    [[nodiscard]] platform::Application::DelegateObserver record() {
        return [this](const DelegatePointer& delegate) { told.push_back(delegate->type()->name()); };
    }

    std::vector<std::string> told;
};

TEST_P(DelegatesContract, ObserversAreToldOfADelegateBeforeItIsKept) {
    EXPECT_EQ(made.application->delegate(), nullptr);
    DelegatePointer before;
    auto early = made.application->observeDelegate([&](const DelegatePointer& delegate) {
        told.push_back("early " + delegate->type()->name());
        before = made.application->delegate();
    });
    const auto first = makeDelegate("first");
    made.application->setDelegate(first);
    EXPECT_EQ(before, nullptr);
    EXPECT_EQ(made.application->delegate(), first);

    const auto late = made.application->observeDelegate(record());  // told of the present one at once
    made.application->setDelegate(makeDelegate("second"));
    EXPECT_EQ(before, first);
    made.application->setDelegate(nullptr);
    EXPECT_EQ(made.application->delegate(), nullptr);
    EXPECT_EQ(first.use_count(), 2);  // this test's own

    early.cancel();
    made.application->setDelegate(makeDelegate("third"));
    EXPECT_THAT(told, testing::ElementsAre("early first", "first", "early second", "second", "third"));
}

TEST_P(DelegatesContract, ScenesAreToldWhileTheirDelegatesLive) {
    auto gone = makeDelegate("gone");
    const auto stays = makeDelegate("stays");
    made.application->connectScene(gone);
    made.application->connectScene(stays);
    gone.reset();
    auto ticket = made.application->observeScenes(record());
    const auto later = makeDelegate("later");
    made.application->connectScene(later);
    ticket.cancel();
    const auto unseen = makeDelegate("unseen");
    made.application->connectScene(unseen);
    EXPECT_THAT(told, testing::ElementsAre("stays", "later"));
    EXPECT_EQ(made.application->delegate(), nullptr);
}

TEST_P(DelegatesContract, TicketsMayOutliveTheApplicationAndBeDroppedInTheirObserver) {
    const auto delegate = makeDelegate("first");
    platform::Ticket itself;
    itself = made.application->observeDelegate([&, token = std::make_shared<int>()](const DelegatePointer&) {
        told.push_back("itself");
        itself.cancel();
    });
    made.application->setDelegate(delegate);
    made.application->setDelegate(delegate);
    EXPECT_THAT(told, testing::ElementsAre("itself"));

    const auto token = std::make_shared<int>();
    auto ticket = made.application->observeScenes([token](const DelegatePointer&) {});
    made = {};
    ticket.cancel();
    EXPECT_EQ(token.use_count(), 1);
}

TEST_P(DelegatesContract, TheNotificationCentreKeepsOneDelegate) {
    EXPECT_EQ(made.notifications->delegate(), nullptr);
    const auto delegate = makeDelegate("first");
    made.notifications->setDelegate(delegate);
    EXPECT_EQ(made.notifications->delegate(), delegate);
    made.notifications->setDelegate(nullptr);
    EXPECT_EQ(delegate.use_count(), 1);
}

}  // namespace orbinel::contract
