#pragma once

#include <memory>
#include <regex>
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

struct FactsContract : Contract<FactsUnderTest> {};

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
    static const std::regex form("[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}");
    std::set<std::string> uuids;
    for (int i = 0; i < 1000; ++i) {
        const auto uuid = made.device->makeUuid();
        EXPECT_TRUE(std::regex_match(uuid, form)) << uuid;
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
