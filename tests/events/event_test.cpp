#include <limits>

#include "support/library_test.hpp"

namespace orbinel::testing {
namespace {

/// Campaigns as a test lays them down; every event's parameters meet their conditions unless they ask for "sku".
class FixedCampaigns final : public CampaignTriggers {
public:
    bool arrived = true;
    std::vector<Campaign> campaigns;
    std::vector<std::string> due;

    bool startRequestCompleted() const noexcept override { return arrived; }
    std::vector<Campaign> campaignsTriggeredBy(std::string_view name) const override {
        std::vector<Campaign> found;
        for (const auto& campaign : campaigns) {
            if ((*campaign)["trigger"] == Value(name)) found.push_back(campaign);
        }
        return found;
    }
    bool checkIfParamsAreMatching(const Dictionary& parameters, const Value& expected) const override {
        return expected.isAbsent() || parameters.contains("sku");
    }
    bool checkInapp(std::string_view name, const Dictionary&, std::int32_t count) override {
        due.push_back(std::string(name) + " " + std::to_string(count));
        return true;
    }
};

class EventTest : public LibraryTest {
protected:
    EventTest() {
        initialise();
        world().eventRecorder.campaigns.unbind();
        world().eventRecorder.campaigns.bind(campaigns);
    }
    static Dictionary parametersOf(const EventRecord& event) { return event.event_params->snapshot(); }

    FixedCampaigns campaigns;
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
    const auto campaign = [&](std::int32_t id, Dictionary extra) {
        extra.set("inapp_id", id);
        extra.set("trigger", "buy");
        campaigns.campaigns.push_back(std::make_shared<const Dictionary>(std::move(extra)));
    };
    campaign(1, {{"trigger_count", 3}});
    campaign(2, {});
    campaign(3, {{"trigger_params", Array{Dictionary{}}}});
    campaigns.arrived = false;
    Orbinel::tagEvent("buy").build();
    EXPECT_THAT(record().eventsBeforeInapp, ElementsAre("buy"));
    EXPECT_THAT(campaigns.due, IsEmpty());

    campaigns.arrived = true;
    for (int i = 0; i < 4; ++i) Orbinel::tagEvent("buy").build();
    Orbinel::tagEvent("Buy").build();
    Orbinel::tagEvent("sell").build();
    EXPECT_THAT(campaigns.due, ElementsAre("buy 1", "buy 2", "buy 3", "buy 3", "buy 4", "buy 4"));
    Orbinel::tagEvent("buy").addParameterWithString("sku", "a").build();
    EXPECT_EQ(record().eventOccurrences, (Dictionary{{"{\"event_name\":\"buy\"}-1", 5},
                                                     {"{\"event_name\":\"buy\"}-2", 5},
                                                     {"{\"event_name\":\"buy\"}-3", 1}}));
}

}  // namespace
}  // namespace orbinel::testing
