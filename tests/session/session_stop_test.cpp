#include <limits>

#include "support/library_test.hpp"

namespace orbinel::testing {
namespace {

struct SessionStopTest : LibraryTest {
    SessionStopTest() { initialise(); }
};

TEST_F(SessionStopTest, HoldsImplausibleDurationsAtTenSeconds) {
    const std::vector<std::pair<double, std::int32_t>> cases{{0, 0},       {0.9, 0}, {10'800, 10'800}, {86'400, 86'400},
                                                             {86'401, 10}, {-1, 10}, {-1e300, 10}};
    for (const auto& [elapsed, expected] : cases) {
        host.defaults->standard()->set(keys::sessionStartTime, host.scheduler->now() - elapsed);
        EXPECT_EQ(world().session.calculateSessionDuration(), expected) << elapsed;
    }
    for (const Value& broken : {Value("x"), Value(std::numeric_limits<double>::quiet_NaN()), Value()}) {
        host.defaults->standard()->set(keys::sessionStartTime, broken);
        EXPECT_EQ(world().session.calculateSessionDuration(), 10);
    }
}

// One bad value costs itself, never the session.
TEST_F(SessionStopTest, CleansItsPayloadToTheLastLeaf) {
    becomeActive();
    const double nan = std::numeric_limits<double>::quiet_NaN();
    Value deep = 1;
    for (int level = 0; level < 600; ++level) deep = Array{std::move(deep)};
    world().session.update([&](SessionRecord& record) {
        record.inapp_logs = {Dictionary{{"x", nan}, {"when", Date{1}}, {"kept", Array{nan, "k"}}}};
        record.push_logs = {deep};
        record.custom_events.push_back({"", 1, std::make_shared<EventParameters>()});
        record.custom_events.push_back({"bare", 1, nullptr});
        record.session_content_variables.set("never", 1);
        record.eventOccurrences.set("never", 1);
        record.session_id = "s1";
    });
    Orbinel::tagEvent("bytes").addParameterWithString("raw", "a\xFFz").build();
    enterBackground();
    ASSERT_THAT(backend.stops(), SizeIs(1));
    const auto stop = backend.stops()[0].payload;
    EXPECT_EQ(stop["inapp_logs"], (Array{Dictionary{{"kept", Array{"k"}}}}));
    EXPECT_THAT(eventNamesOf(backend.stops()[0]), ElementsAre("session_start", "bytes"));
    EXPECT_EQ((*(*stop["custom_events"].ifArray())[1].ifDictionary())["event_params"],
              (Dictionary{{"raw", "a\xEF\xBF\xBDz"}}));
    for (const auto& [key, value] : stop) {
        EXPECT_FALSE(value.ifArray() != nullptr && value.ifArray()->empty()) << key;
        EXPECT_FALSE(value.ifDictionary() != nullptr && value.ifDictionary()->empty()) << key;
    }
    EXPECT_FALSE(stop.contains("session_content_variables") || stop.contains("eventOccurrences") ||
                 stop.contains("universal_link"));
    EXPECT_EQ(sinks.count("Event name is empty."), 1U);
    EXPECT_EQ(sinks.count("Invalid parameters structure."), 1U);
    EXPECT_EQ(record().session_id, "s1");
    EXPECT_EQ(sinks.feeds("sessionStopRequest").size(), 2U);
}

TEST_F(SessionStopTest, SendsWhatIsAddedToAnEventAfterItWasBuilt) {
    becomeActive();
    auto event = Orbinel::tagEvent("late").addParameterWithInt("a", 1);
    event.build();
    event.addParameterWithInt("b", 2);
    auto copy = event;
    copy.addParameterWithInt("c", 3);
    enterBackground();
    event.addParameterWithInt("d", 4);
    EXPECT_EQ((*(*backend.stops().at(0).payload["custom_events"].ifArray())[1].ifDictionary())["event_params"],
              (Dictionary{{"a", 1}, {"b", 2}}));
}

TEST_F(SessionStopTest, WritesJsonTextForLogs) {
    const auto& session = world().session;
    EXPECT_EQ(session.dictToJson({{"a", Array{1, Null{}}}}), "{\n  \"a\": [\n    1,\n    null\n  ]\n}");
    EXPECT_EQ(session.dictToJson({{"d", Date{1}}}), "{}");
    EXPECT_EQ(sinks.count("JSON is not valid."), 1U);
    EXPECT_TRUE(session.isValidJSONString("[{}]"));
    EXPECT_FALSE(session.isValidJSONString(""));
    EXPECT_FALSE(session.isValidJSONString("[1"));
    EXPECT_FALSE(session.isValidJSONString("7"));
    EXPECT_EQ(sinks.count("JSON serialization failed."), 1U);
    EXPECT_EQ(sinks.count("JSON is invalid after deserialization."), 1U);
}

}  // namespace
}  // namespace orbinel::testing
