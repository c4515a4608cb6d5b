#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <limits>
#include <memory>

#include "orbinel/platform/accelerometer.hpp"
#include "orbinel/platform/haptics.hpp"
#include "orbinel/platform/pasteboard.hpp"
#include "orbinel/platform/review_prompt.hpp"
#include "tests/port_contract/contract_support.hpp"

namespace orbinel::contract {

/// The services with which a device feels and is felt.
struct TouchUnderTest {
    std::shared_ptr<platform::Accelerometer> accelerometer;
    std::shared_ptr<platform::Haptics> haptics;
    std::shared_ptr<platform::Pasteboard> pasteboard;
    std::shared_ptr<platform::ReviewPrompt> reviewPrompt;
    std::function<void()> move;  // brings a sample about, where it can, and runs the main queue
};

struct TouchContract : Contract<TouchUnderTest> {};

TEST_P(TouchContract, SamplesArriveOnTheMainQueueUntilTheTicketIsGone) {
    int samples = 0;
    auto ticket = made.accelerometer->start(std::chrono::milliseconds(100),
                                            [&](const platform::AccelerationOrReason&) { ++samples; });
    EXPECT_EQ(samples, 0);
    made.move();
    EXPECT_EQ(samples > 0, made.accelerometer->isAvailable());
    ticket.cancel();
    samples = 0;
    made.move();
    EXPECT_EQ(samples, 0);
}

TEST_P(TouchContract, ATicketMayBeDroppedInsideASampleAndAfterTheService) {
    platform::Ticket ticket;
    int samples = 0;
    const auto stopAtOnce = [&](const platform::AccelerationOrReason&) {
        ++samples;
        ticket.cancel();
    };
    ticket = made.accelerometer->start(std::chrono::milliseconds(1), stopAtOnce);
    made.move();
    made.move();
    EXPECT_LE(samples, 1);
    ticket = made.accelerometer->start(std::chrono::milliseconds(1), stopAtOnce);
    made = {};
}

TEST_P(TouchContract, AnyStyleAndAnyTextAreTaken) {
    for (const std::int32_t style : {0, 4, 5, -1, std::numeric_limits<std::int32_t>::max()}) {
        made.haptics->impact(style);
    }
    made.pasteboard->setText("");
    made.pasteboard->setText("Gutschein \xC3\xBC");
    made.reviewPrompt->requestReview();
}

}  // namespace orbinel::contract
