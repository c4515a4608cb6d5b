#include <limits>

#include "inapp/inapp_status.hpp"
#include "tests/inapp/inapp_library.hpp"

namespace orbinel::testing {
namespace {

class FrequencyCapTest : public InappLibraryTest {
protected:
    bool isCapped(Value id, Value frequency) {
        return world().frequencyCap.isFreqCapped({{"inapp_id", std::move(id)}, {"frequency", std::move(frequency)}});
    }
};

TEST_F(FrequencyCapTest, CapsForItsPeriodOrForGoodAlsoAcrossLaunches) {
    EXPECT_FALSE(isCapped(1, 60));
    EXPECT_FALSE(isCapped("2", -1));
    host.advance(59);
    relaunchWired();
    EXPECT_TRUE(isCapped(std::int64_t{1}, 60));
    EXPECT_TRUE(isCapped(2, -1));
    host.advance(1);
    EXPECT_FALSE(isCapped(1, "60"));  // and its next period begins
    EXPECT_TRUE(isCapped(1, 60));

    host.advance(100'000);
    world().frequencyCap.cleanFrequencyCache();
    host.settle();
    EXPECT_EQ(stored(keys::inappFrequency), Value(Dictionary{{"2", -1}}));
    EXPECT_TRUE(isCapped(2, 5));
}

TEST_F(FrequencyCapTest, WhatHasNoReadablePeriodIsNeverCapped) {
    for (const auto& frequency : {Value(), Value(Null()), Value("soon"), Value(0), Value(-30)}) {
        EXPECT_FALSE(isCapped(3, frequency));
        EXPECT_FALSE(isCapped(3, frequency));
    }
    EXPECT_FALSE(isCapped(Value(), 60));
    EXPECT_FALSE(isCapped("", 60));
    EXPECT_FALSE(isCapped("", 60));
    EXPECT_FALSE(isCapped(4, std::numeric_limits<std::int64_t>::max()));
    EXPECT_TRUE(isCapped(4, 1));

    host.defaults->standard()->set(keys::inappFrequency, Dictionary{{"5", "x"}, {"6", Array()}, {"7", -1.0}});
    relaunchWired();
    EXPECT_FALSE(isCapped(5, 60));
    EXPECT_TRUE(isCapped(5, 60));
    EXPECT_TRUE(isCapped(7, 60));
    world().frequencyCap.cleanFrequencyCache();
    EXPECT_EQ(stored(keys::inappFrequency).ifDictionary()->size(), 2U);
    host.defaults->standard()->set(keys::inappFrequency, "damaged");
    relaunchWired();
    EXPECT_FALSE(isCapped(7, 60));
}

class InappLogsTest : public InappLibraryTest {
protected:
    void present(Value id) {
        world().presentedInapp.present(std::make_shared<const Dictionary>(
            Dictionary{{"inapp_id", std::move(id)}, {"variant_id", std::int64_t{2}}}));
    }
    static std::size_t seenEvents() {
        std::size_t count = 0;
        for (const auto& event : record().custom_events) count += event.event_name == "inapp_seen" ? 1 : 0;
        return count;
    }
};

TEST_F(InappLogsTest, ACloseIsLoggedOnceWithItsClicks) {
    world().inappLogs.addInappLog(kBANNERCLICKED);  // nothing was ever presented
    present("12");
    for (const auto* button : {"one", "two", "three"}) {
        host.advance(1);
        world().inappLogs.addClickLog({{"button", button}, {"timestamp", "forged"}});
    }
    world().inappLogs.addInappLog(kWEBVIEWCLICKED);  // removed before it was shown
    EXPECT_THAT(record().inapp_logs, IsEmpty());
    EXPECT_EQ(seenEvents(), 0U);

    world().presentedInapp.setShouldAddInappLog(true);
    world().inappLogs.addInappLog(kWEBVIEWCLICKED);
    world().inappLogs.addInappLog(kWEBVIEWCLICKED);
    Array clicks;
    const auto first = static_cast<int>(begin) + 1;
    for (const auto* button : {"one", "two", "three"}) {
        clicks.emplace_back(Dictionary{{"button", button}, {"timestamp", first + static_cast<int>(clicks.size())}});
    }
    const Dictionary close{{"inapp_id", 12}, {"variant_id", 2}, {"dismiss_type", 9}};
    auto logged = close;
    logged.set("click_logs", clicks);
    EXPECT_EQ(record().inapp_logs, Array{logged});
    EXPECT_TRUE(record().inapp_logs[0].ifDictionary()->find("inapp_id")->ifInt32() != nullptr);
    EXPECT_EQ(seenEvents(), 1U);
    EXPECT_EQ(record().custom_events.back().event_params->snapshot(), close);
    EXPECT_THAT(sinks.messages({"Shake detector"}), SizeIs(4)) << "stopped by each";

    world().inappLogs.addInappLog(inappCloseReasonKeyboardDismissType);  // a page may give any reason
    EXPECT_THAT(record().inapp_logs, SizeIs(1));
    world().presentedInapp.setShouldAddInappLog(true);
    world().inappLogs.addInappLog(inappCloseReasonKeyboardDismissType);
    ASSERT_THAT(record().inapp_logs, SizeIs(2));
    EXPECT_FALSE(record().inapp_logs[1].ifDictionary()->contains("click_logs"));
}

// What is triggered by the close must find it closed, and keep what it gathers itself.
TEST_F(InappLogsTest, AMessageTriggeredByTheCloseOfAnotherBeginsAnew) {
    deliver({Dictionary{{"inapp_id", 2}, {"trigger", "inapp_seen"}, {"show_type", "event"}}});
    present(1);
    world().presentedInapp.setShouldAddInappLog(true);
    world().inappLogs.addClickLog({{"button", "x"}});
    world().inappLogs.addInappLog(kWEBVIEWCLICKED);
    EXPECT_THAT(record().inapp_logs, SizeIs(1));
    EXPECT_FALSE(world().presentedInapp.shouldAddInappLog());
    EXPECT_THAT(world().presentedInapp.takeClicks(), IsEmpty());
    EXPECT_EQ(handedOver(), 2);
}

TEST_F(InappLogsTest, APageCannotClickForEver) {
    present(1);
    for (int i = 0; i < 2000; ++i) world().inappLogs.addClickLog({});
    EXPECT_THAT(world().presentedInapp.takeClicks(), SizeIs(1000));
    present(2);
    for (int i = 0; i < 4; ++i) world().inappLogs.addClickLog({{"text", std::string(400'000, 'x')}});
    EXPECT_THAT(world().presentedInapp.takeClicks(), SizeIs(2)) << "more than a megabyte in all";
}

TEST_F(InappLogsTest, ActionsHaveTheirTextsAndUnknownReasonsOne) {
    world().inappLogs.logInAppMessageAction("disableInAppMessages");
    const auto fed = sinks.feeds("logInAppMessageAction");
    ASSERT_THAT(fed, SizeIs(1));
    EXPECT_EQ(fed[0].data, (Dictionary{{"action", "disableInAppMessages"}, {"description", "In-app message action"}}));
    EXPECT_EQ(sinks.records().back().customAttributes, (Dictionary{{"action", "disableInAppMessages"}}));
    for (const int none : {-1, 16}) EXPECT_EQ(getReason(none), "Unknown log");
}

}  // namespace
}  // namespace orbinel::testing
