#include <atomic>
#include <thread>

#include "personalisation/content_optimizer.hpp"
#include "support/library_test.hpp"

namespace orbinel::testing {
namespace {

constexpr auto content = OrbinelVariableTypeContent;

class ContentTest : public LibraryTest {
protected:
    ContentTest() { initialise(); }

    void deliver(const std::string& contents) {
        backend.answer("/session/start", {200, "{" + contents + "}"});
        becomeActive();
    }
    static OrbinelContentOptimizer& optimizer() { return world().contentOptimizer; }
    Value cached(std::string_view name) { return host.defaults->suite(keys::contentSuite)->value(name); }
    std::vector<Value> warnings() {
        std::vector<Value> found;
        for (const auto& feed : sinks.feeds("addAsNewContentVariable")) found.push_back(feed.data["warning"]);
        return found;
    }

    const std::string titleDelivered =
        R"("contents": [{"content_id": 7, "variant_id": 3, "variables": [)"
        R"({"variable_name": "title", "new_value": "Hello"}, {"variable_name": "bare"}]}])";
};

TEST_F(ContentTest, ReadsWhatWasDeliveredAndLogsItOncePerSession) {
    EXPECT_EQ(optimizer().getStringWithName("title", "Hi", content), "Hi");  // known to be absent, until the delivery
    deliver(titleDelivered);
    EXPECT_EQ(optimizer().getStringWithName("title", "Hi", content), "Hello");
    EXPECT_EQ(optimizer().getStringFromSessionVariablesWithName("title", "Hi", content), "Hello");
    EXPECT_EQ(optimizer().getStringWithName("bare", "Hi", content), "Hi");
    EXPECT_TRUE(optimizer().getBoolWithName("none", true, content));
    EXPECT_EQ(optimizer().getStringWithName("none", nullptr, content), std::nullopt);
    EXPECT_EQ(record().content_logs, (Dictionary{{"title", Dictionary{{"content_id", 7}, {"variant_id", 3}}},
                                                 {"bare", Dictionary{{"content_id", 7}, {"variant_id", 3}}}}));
    EXPECT_THAT(record().content_variables, IsEmpty());
    EXPECT_EQ(warnings()[0], "This device should be added as a test device via email.");
    const auto read = sinks.feeds("getBoolWithName");
    ASSERT_THAT(read, SizeIs(1));
    EXPECT_EQ(read[0].data,
              (Dictionary{{"variableName", "none"}, {"defaultValue", "1"}, {"type", "OrbinelVariableTypeContent"}}));
    EXPECT_TRUE(read[0].shouldFeed);
    EXPECT_EQ(sinks.feeds("getContentFromCache")[1].data["new_value"], "Hello");
}

TEST_F(ContentTest, TheCacheOutlivesTheProcessAndTheSessionStoreTheSessionDoesNot) {
    deliver(titleDelivered);
    enterBackground();
    EXPECT_EQ(optimizer().getStringFromSessionVariablesWithName("title", "Hi", content), "Hi");
    relaunch();
    initialise();
    EXPECT_EQ(optimizer().getStringWithName("title", "Hi", content), "Hello");
    EXPECT_TRUE(record().content_logs.contains("title"));
    deliver(titleDelivered + R"(, "passive_variables": ["title", 3, "unknown"])");
    EXPECT_EQ(optimizer().getStringWithName("title", "Hi", content), "Hi");
    EXPECT_EQ(optimizer().getStringFromSessionVariablesWithName("title", "Hi", content), "Hello");
    EXPECT_FALSE(cached("bare").isAbsent());
}

TEST_F(ContentTest, RegistersVariablesOnATestDevice) {
    world().testDevices.markDeviceAsDebug();
    static_cast<void>(optimizer().getBoolWithName("flag", true, OrbinelVariableTypeElement));
    static_cast<void>(optimizer().getIntFromSessionVariablesWithName("flag", 5, content));
    static_cast<void>(optimizer().getIntFromSessionVariablesWithName("size", 5, static_cast<OrbinelVariableType>(9)));
    EXPECT_THAT(record().content_variables, SizeIs(2));
    EXPECT_EQ((*record().content_variables["flag"].ifDictionary())["data_class"], 2);  // as it was read first
    EXPECT_EQ((*record().content_variables["size"].ifDictionary())["data_type"], 9);
    EXPECT_EQ(warnings()[1], "This content is already exsist.");
    EXPECT_EQ(sinks.feeds("getIntFromSessionVariablesWithName")[1].data["type"], "Unknown");
}

TEST_F(ContentTest, TestContentsAreListedOncePerStoreAndCanBeTakenBack) {
    deliver(R"("contents": [{"content_id": 0, "variant_id": 0, "variables": [{"variable_name": "t", "new_value": 1}]},)"
            R"({"content_id": 5, "variant_id": 1, "variables": [{"variable_name": "kept", "new_value": 2}]}])");
    EXPECT_EQ(cached(keys::testContents), (Array{"t", "t"}));
    EXPECT_EQ(optimizer().getIntWithName("t", 9, content), 1);
    optimizer().removeTestVariables();
    EXPECT_EQ(optimizer().getIntWithName("t", 9, content), 9);
    EXPECT_EQ(optimizer().getIntWithName("kept", 9, content), 2);
    EXPECT_TRUE(cached(keys::testContents).isAbsent());
    optimizer().removeTestVariables();
}

TEST_F(ContentTest, DeliveriesAndStoredRecordsOfWrongKindsHarmNobody) {
    deliver(R"("contents": [3, {"variables": 7}, {"content_id": {}, "variant_id": "12x", "variables": [)"
            R"(null, 1, {"new_value": 1}, {"variable_name": 4}, {"variable_name": "OrbinelTestContents"},)"
            R"({"variable_name": "null", "new_value": null}, {"variable_name": "list", "new_value": [1, "a"]}]}],)"
            R"("passive_variables": {"x": 1})");
    EXPECT_EQ(optimizer().getStringWithName("OrbinelTestContents", "d", content), "d");
    EXPECT_EQ(optimizer().getStringWithName("null", "d", content), "d");
    EXPECT_EQ(optimizer().getStringWithName("list", "d", content), R"([1,"a"])");
    EXPECT_EQ(optimizer().getIntWithName("list", 5, content), 5);
    EXPECT_TRUE(optimizer().getBoolWithName("list", true, content));
    EXPECT_EQ(record().content_logs["list"], (Value(Dictionary{{"content_id", 0}, {"variant_id", 12}})));
    host.defaults->suite(keys::contentSuite)->set("odd", "no record");
    EXPECT_EQ(optimizer().getStringWithName("odd", "d", content), "d");
    EXPECT_EQ(optimizer().getStringWithName(nullptr, "d", content), "d");
    EXPECT_THAT(sinks.messages({"[Exception]"}), IsEmpty());
}

TEST_F(ContentTest, AClosedGateGivesTheDefaultAndNothingElse) {
    deliver(titleDelivered);
    sinks.clear();
    world().helper.setMobileSessionGdprConsent(false);
    EXPECT_EQ(optimizer().getStringWithName("title", "Hi", content), "Hi");
    EXPECT_EQ(optimizer().getIntFromSessionVariablesWithName("title", 4, content), 4);
    EXPECT_THAT(record().content_logs, IsEmpty());
    EXPECT_THAT(sinks.feeds("getStringWithName"), IsEmpty());
}

// Whatever readers remember meanwhile, the last delivery or removal counts once it is over.
TEST_F(ContentTest, ReadsFromOtherThreadsNeverKeepWhatWasReplaced) {
    std::atomic<bool> over{false};
    std::vector<std::thread> readers;
    for (int i = 0; i < 3; ++i) {
        readers.emplace_back([&] {
            while (!over) static_cast<void>(optimizer().getIntWithName("n", -1, content));
        });
    }
    for (int n = 0; n < 300; ++n) {
        const Array variables{Dictionary{{"variable_name", "n"}, {"new_value", n}}};
        optimizer().insertContentCampaigns(variables, 1, 1);
        EXPECT_EQ(optimizer().getIntWithName("n", -1, content), n);
        if (n % 3 == 0) {
            optimizer().removeContentsFromCache(Array{"n"});
            EXPECT_EQ(optimizer().getIntWithName("n", -1, content), -1);
        }
    }
    over = true;
    for (auto& reader : readers) reader.join();
}

}  // namespace
}  // namespace orbinel::testing
