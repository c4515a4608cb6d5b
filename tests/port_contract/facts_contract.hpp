#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <set>
#include <string>

#include "orbinel/platform/device.hpp"
#include "orbinel/platform/notifications.hpp"
#include "tests/port_contract/contract_support.hpp"

namespace orbinel::contract {

/// The services that only tell facts.
struct FactsUnderTest {
    std::shared_ptr<platform::Device> device;
    std::shared_ptr<platform::Notifications> notifications;
};

using FactsFactory = std::function<FactsUnderTest()>;

class FactsContract : public testing::TestWithParam<FactsFactory> {
protected:
    FactsUnderTest made = GetParam()();
};

TEST_P(FactsContract, FactsAreWithinTheirRanges) {
    const auto facts = made.device->facts();
    ASSERT_NE(facts, nullptr);
    if (facts->battery) {
        EXPECT_GE(*facts->battery, 0);
        EXPECT_LE(*facts->battery, 100);
    }
    if (facts->screen) {
        EXPECT_GT(facts->screen->width, 0);
        EXPECT_GT(facts->screen->height, 0);
        EXPECT_GT(facts->screen->scale, 0);
    }
    // What is not known is absent, not an empty text.
    for (const auto* text : {&facts->machine, &facts->modelName, &facts->osVersion, &facts->preferredLanguage,
                             &facts->timezone, &facts->vendorIdentifier, &facts->carrier}) {
        EXPECT_NE(*text, "");
    }
    EXPECT_EQ(facts->vendorIdentifier.value_or(std::string(36, '0')).size(), 36u);
}

TEST_P(FactsContract, UuidsAreOfVersionFourAndNeverTheSame) {
    std::set<std::string> uuids;
    for (int i = 0; i < 1000; ++i) {
        const auto uuid = made.device->makeUuid();
        ASSERT_EQ(uuid.size(), 36u);
        for (std::size_t at = 0; at < uuid.size(); ++at) {
            const std::string allowed = at == 8 || at == 13 || at == 18 || at == 23 ? "-"
                                        : at == 14                                  ? "4"
                                        : at == 19                                  ? "89AB"
                                                                                    : "0123456789ABCDEF";
            EXPECT_NE(allowed.find(uuid[at]), std::string::npos) << uuid;
        }
        uuids.insert(uuid);
    }
    EXPECT_EQ(uuids.size(), 1000u);
}

TEST_P(FactsContract, SettingsAreAnsweredExactlyOnce) {
    const auto answers = std::make_shared<Gathered<platform::NotificationSettings>>();
    made.notifications->readSettings([answers](platform::NotificationSettings settings) { answers->add(settings); });
    EXPECT_TRUE(answers->await(1));
    made = {};
    EXPECT_EQ(answers->size(), 1u);
}

}  // namespace orbinel::contract
