#include "support/library_test.hpp"

namespace orbinel::testing {
namespace {

/// Notes what a session start hands to the folders above it.
class WatchingCollaborators final : public SessionCampaigns,
                                    public SessionContents,
                                    public SessionRecommendations,
                                    public SessionLogSwitches {
public:
    std::vector<std::string> calls;
    std::string dueFor;
    bool testInApp = false;

    void setStartRequestCompleted(bool completed) override {
        note(completed ? "completed" : "not completed");
        current_world::get()->inapps.setStartRequestCompleted(completed);
    }
    void forgetCampaigns() override {}
    void cleanFrequencyCache() override { note("clean"); }
    void inappToMemory(const Array& inapps) override { note("store " + std::to_string(inapps.size())); }
    bool checkInapp(std::string_view name, std::int32_t count) override {
        note("check " + std::string(name) + " " + std::to_string(count));
        return name == dueFor;
    }
    bool doesTestInAppExist() override { return testInApp; }
    void insertContentCampaigns(const Value& variables, const Value& id, const Value& variant) override {
        note("content " + std::to_string(variables.ifArray()->size()) + " " + std::to_string(*id.integer()) + " " +
             std::to_string(*variant.integer()));
    }
    void insertNonCachedContentCampaigns(const Value&, const Value&, const Value&) override { note("uncached"); }
    void removeContentsFromCache(const Value&) override { note("passive"); }
    void storeEndpoints(const Dictionary&) override { note("endpoints"); }
    void clearEndpoints() override { note("no endpoints"); }
    void emptyRecommendationLogs() override {}
    void setLogFlushTimeInterval(double seconds) override {
        note("flush " + std::to_string(static_cast<int>(seconds)));
    }
    void setSessionId(const std::string& id) override { note("session [" + id + "]"); }
    void setIsLoggingEnabled(bool enabled) override { note(enabled ? "logging" : "no logging"); }
    void startSendingLogsIfAppropriate() override { note("start logs"); }

private:
    void note(std::string call) { calls.push_back(std::move(call)); }
};

class SessionStartTest : public LibraryTest {
protected:
    SessionStartTest() {
        initialise();
        auto& bound = world().collaborators;
        rebind(bound.campaigns);
        rebind(bound.contents);
        rebind(bound.recommendations);
        rebind(bound.logSwitches);
    }
    /// Sends a start that is answered so; whether its completion was called.
    bool startAnswered(Scripted answer, int reason = 0) {
        backend.answerOnce("/session/start", std::move(answer));
        watched.calls.clear();
        bool completed = false;
        world().sessionStart.sendStartRequestWithReason(reason, [&] { completed = true; });
        host.settle();
        return completed;
    }
    WatchingCollaborators watched;

private:
    template <typename T>
    void rebind(Late<T>& late) {
        late.unbind();
        late.bind(watched);
    }
};

TEST_F(SessionStartTest, DescribesUserDeviceAndReason) {
    host.device->change([](platform::DeviceFacts& facts) {
        facts.connection = platform::Connection::cellular;
        facts.battery = 55;
        facts.osVersion = "17.1";
        facts.locationAllowed = true;
    });
    EXPECT_TRUE(startAnswered({}));
    const auto sent = backend.starts().at(0).payload;
    const auto udid = stored(keys::udidCache);
    EXPECT_EQ(sent, (Dictionary{{"udid", udid},
                                {"orbinel_id", udid},
                                {"partner_name", "acme"},
                                {"device_info", Dictionary{{"app_version", "1.0.0"},
                                                           {"os_version", "17.1"},
                                                           {"connection", "celular"},
                                                           {"battery", 55},
                                                           {"push_enabled", false},
                                                           {"location_enabled", true},
                                                           {"sdk_version", "13.9.0"}}},
                                {"first_run", true},
                                {"reason", "default"}}));
    EXPECT_TRUE(startAnswered({}, 2));
    EXPECT_EQ(backend.starts().at(1).payload["reason"], "login");
    EXPECT_FALSE(backend.starts().at(1).payload.contains("first_run"));
    EXPECT_TRUE(startAnswered({}, 5));
    EXPECT_FALSE(backend.starts().at(2).payload.contains("reason"));
    EXPECT_EQ(host.defaults->appGroup("group.acme")->value(keys::orbinelId), udid);
    EXPECT_EQ(host.defaults->appGroup("group.acme")->value(keys::partnerName), "acme");
}

TEST_F(SessionStartTest, AppliesTheAnswerInItsOrder) {
    Orbinel::tagEvent("early").build();
    EXPECT_TRUE(startAnswered({.body = R"({"session_id": "s1", "log_flush_time_interval": 30, "is_logging_enabled": 1,
        "inapps": [{"inapp_id": 5, "variant_id": null, "trigger": "x"}, 7], "new_id": "id-9",
        "smart_recommendations": {"a": "b"}, "contents": [{"content_id": 1, "variant_id": 2, "variables": [{}, {}]}, "x"],
        "passive_variables": []})"}));
    EXPECT_THAT(watched.calls,
                ElementsAre("completed", "flush 30", "session [s1]", "logging", "start logs", "endpoints",
                            "content 2 1 2", "uncached", "passive", "clean", "check session_start_from_push 1",
                            "store 2", "check early 1", "check session_start 1"));
    EXPECT_THAT(eventNames(), ElementsAre("early", "session_start"));
    EXPECT_EQ(stored(keys::orbinelId), "id-9");
    EXPECT_EQ(stored(keys::retryIdentityRequest), false);
    EXPECT_EQ(record().session_id, "s1");
    EXPECT_EQ(record().received_inapps, (Array{Dictionary{{"inapp_id", 5}, {"timestamp", 1'767'225'600}}}));
    EXPECT_TRUE(record().eventsBeforeInapp.empty());
}

TEST_F(SessionStartTest, NamesThatWaitedForCampaignsEndWithTheirSession) {
    for (int foreground = 1; foreground <= 3; ++foreground) {
        watched.calls.clear();
        const Scripted answered{.body = R"({"inapps": [{"inapp_id": 1}]})"};
        backend.answer("/session/start", foreground == 3 ? answered : Scripted{.status = 503});
        becomeActive();
        Orbinel::tagEvent("late").build();
        enterBackground();
    }
    EXPECT_THAT(watched.calls, Contains("check session_start 1").Times(1));
    EXPECT_THAT(watched.calls, ::testing::Not(Contains("check late 1")));
}

TEST_F(SessionStartTest, SurvivesEveryKindOfAnswer) {
    // No answer, or one that is no dictionary, applies nothing; the latter still ends the start and the wait for it.
    EXPECT_FALSE(startAnswered({.status = 500}));
    EXPECT_THAT(eventNames(), ElementsAre("session_start"));
    for (const char* body : {"[1]", "text", "", "7", "{\"a\":", "\xFF"}) {
        EXPECT_TRUE(startAnswered({.body = body})) << body;
        EXPECT_THAT(watched.calls, ElementsAre("completed"));
    }
    EXPECT_THAT(sinks.feeds("sendError"), SizeIs(6));

    // Values of wrong kinds count as missing.
    EXPECT_TRUE(startAnswered({.body = R"({"sdk_disabled": "yes", "session_id": 42, "log_flush_time_interval": "30",
        "is_logging_enabled": {}, "inapps": {"a": 1}, "new_id": 7, "reset_iid": [], "smart_recommendations": [],
        "contents": 3, "passive_variables": null})"}));
    EXPECT_THAT(watched.calls, ElementsAre("completed", "session []", "no logging", "start logs", "no endpoints"));
    EXPECT_TRUE(stored(keys::orbinelId).isAbsent());
}

TEST_F(SessionStartTest, EndsWithoutCompletionWhenDisabledOrWhenAMessageTakesItsPlace) {
    const Scripted withInapps{.body = R"({"inapps": [{"inapp_id": 1}]})"};
    watched.dueFor = "session_start_from_push";
    EXPECT_FALSE(startAnswered(withInapps));
    EXPECT_EQ(watched.calls.back(), "store 1");
    watched.dueFor = "";
    watched.testInApp = true;
    EXPECT_FALSE(startAnswered(withInapps));
    watched.testInApp = false;
    EXPECT_TRUE(startAnswered({.body = R"({"inapps": []})"}));
    EXPECT_EQ(watched.calls.back(), "check session_start_from_push 1");

    sinks.clear();
    EXPECT_FALSE(startAnswered({.body = R"({"sdk_disabled": true, "session_id": "s"})"}));
    EXPECT_THAT(watched.calls, ElementsAre("completed"));
    EXPECT_THAT(sinks.feeds("tagEvent"), IsEmpty());
}

}  // namespace
}  // namespace orbinel::testing
