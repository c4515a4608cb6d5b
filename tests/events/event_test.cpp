#include <limits>

#include "support/library_test.hpp"

namespace orbinel::testing {
namespace {

struct EventTest : LibraryTest {
    EventTest() { initialise(); }
};

TEST_F(EventTest, KeepsAndDropsParametersByTheirRules) {
    host.scheduler->setTimeZone("Europe/Istanbul");
    const double infinity = std::numeric_limits<double>::infinity();
    const std::string megabyte(1'000'000, 'x');
    auto event = Orbinel::tagEvent("seen");
    event.addParameterWithString("s", "x").addParameterWithString("s_empty", "").addParameterWithString("Price", "x");
    event.addParameterWithString("big", megabyte);
    event.addParameterWithInt("i", 1).addParameterWithInt("i_zero", 0).addParameterWithInt("i_minus", -5);
    event.addParameterWithDouble("d", -0.5).addParameterWithDouble("d_nan", std::nan(""));
    event.addParameterWithDouble("d_inf", -infinity).addParameterWithBoolean("b", false);
    event.addParameterWithDate("t", Date{begin + 0.25}).addParameterWithDate("t_none", std::nullopt);
    event.addParameterWithArray("a", {"a", 3, "b"}).addParameterWithArray("a_empty", {1, 2});
    EXPECT_EQ(event.getParameters(), (Dictionary{{"s", "x"},
                                                 {"big", megabyte},
                                                 {"i", 1},
                                                 {"d", -0.5},
                                                 {"b", false},
                                                 {"t", "2026-01-01T03:00:00.250Z"},
                                                 {"a", Array{"a", "b"}},
                                                 {"a_empty", Array{}}}));
    event.addParameterWithString("s", "y").addParameterWithInt("a_empty", 9);
    std::vector<std::string> keys;
    for (const auto& [key, value] : event.getParameters()) keys.push_back(key);
    EXPECT_THAT(keys, ElementsAre("s", "big", "i", "d", "b", "t", "a", "a_empty"));
    EXPECT_EQ(event.getParameters()["s"], "y");
    EXPECT_EQ(event.getParameters()["a_empty"], 9);

    auto mixed = Orbinel::tagEvent("seen").addParameters({{"i", 0},
                                                          {"wide", std::int64_t{7}},
                                                          {"d", 1.5},
                                                          {"s", ""},
                                                          {"b", true},
                                                          {"t", Date{begin}},
                                                          {"a", Array{1, "x"}},
                                                          {"n", Null{}},
                                                          {"dict", Dictionary{}},
                                                          {"Bad", 1}});
    EXPECT_EQ(
        mixed.getParameters(),
        (Dictionary{
            {"i", 0}, {"wide", 7.0}, {"d", 1.5}, {"b", true}, {"t", "2026-01-01T03:00:00.000Z"}, {"a", Array{"x"}}}));
    const auto warnings = sinks.feeds("warningMessageForEventValue");
    ASSERT_THAT(warnings, SizeIs(2));
    EXPECT_EQ(warnings[1].data["warning"], "{} value could not be associated with a suitable data type.");
}

TEST_F(EventTest, StoresRecordsAndFeedsTheWizard) {
    Orbinel::tagEvent("bare").build();
    Orbinel::tagEvent("full").addParameterWithInt("c_level", 3).addParameterWithString("s", "x").build();
    Orbinel::tagEvent("Refused").build();
    Orbinel::signUpConfirmation();
    const auto events = record().custom_events;
    ASSERT_THAT(events, SizeIs(3));
    EXPECT_EQ(events[1].event_name, "full");
    EXPECT_EQ(events[1].timestamp, static_cast<std::int32_t>(begin));
    EXPECT_EQ(events[2].event_name, "sign_up_confirmation");
    EXPECT_THAT(sinks.feeds("tagEvent"), SizeIs(2));
    const auto fed = sinks.feeds("tagEventWithParameters");
    ASSERT_THAT(fed, SizeIs(1));
    EXPECT_TRUE(fed[0].shouldFeed);
    EXPECT_EQ(fed[0].data["event_params"], (Array{Dictionary{{"type", "number"}, {"name", "level"}, {"value", 3}},
                                                  Dictionary{{"type", "string"}, {"name", "s"}, {"value", "x"}}}));
}

TEST_F(EventTest, ThrottlesOrdinaryEventsBeyondTheBudgetOfOneRecord) {
    becomeActive();  // its own "session_start" uses one
    for (int i = 0; i < 150; ++i) Orbinel::tagEvent("inapp_seen").build();
    EXPECT_EQ(world().eventBudget.getTotalEventCount(), 1);
    for (int i = 0; i < 105; ++i) Orbinel::tagEvent("ordinary").build();
    EXPECT_THAT(record().custom_events, SizeIs(1 + 150 + 99));
    Orbinel::tagEvent("push_session").build();
    Orbinel::tagEvent("confirmation_page_view").build();
    Orbinel::tagEvent("Inapp_seen").build();
    EXPECT_THAT(record().custom_events, SizeIs(252));
    enterBackground();
    Orbinel::tagEvent("next").build();
    EXPECT_THAT(record().custom_events, SizeIs(1));
}

TEST_F(EventTest, RemembersNamesUntilTheCampaignsArriveAndCountsAfterwards) {
    backend.answer("/session/start", {.body = R"({"inapps": [
        {"inapp_id": 1, "trigger": "buy", "trigger_count": 9},
        {"inapp_id": 2, "trigger": "buy", "trigger_count": 9,
         "trigger_params": [{"key": "sku", "op": "eq", "value": "a"}]}]})"});
    Orbinel::tagEvent("buy").build();
    EXPECT_THAT(record().eventsBeforeInapp, ElementsAre("buy"));
    becomeActive();
    EXPECT_THAT(record().eventsBeforeInapp, IsEmpty());
    for (const auto* name : {"buy", "buy", "Buy", "sell"}) Orbinel::tagEvent(name).build();
    Orbinel::tagEvent("buy").addParameterWithString("sku", "a").build();
    EXPECT_THAT(record().eventsBeforeInapp, IsEmpty());
    EXPECT_EQ(record().eventOccurrences,
              (Dictionary{{"{\"event_name\":\"buy\"}-1", 3}, {"{\"event_name\":\"buy\"}-2", 1}}));
}

}  // namespace
}  // namespace orbinel::testing
