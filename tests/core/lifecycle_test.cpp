#include <chrono>

#include "platform/forwarding_notifications.hpp"
#include "support/library_test.hpp"

namespace orbinel::testing {
namespace {

struct LifecycleTest : LibraryTest {
    LifecycleTest() { initialise(); }
};

// One foreground period, one start and one stop, whatever the platform repeats.
TEST_F(LifecycleTest, KeepsOneSessionForEachForegroundPeriod) {
    becomeActive();
    becomeActive();
    Orbinel::tagEvent("seen").addParameterWithString("sku", "a1").addParameterWithInt("n", 2).build();
    host.advance(90);
    enterBackground();
    enterBackground();

    ASSERT_THAT(backend.starts(), SizeIs(1));
    ASSERT_THAT(backend.stops(), SizeIs(1));
    const auto stop = backend.stops()[0].payload;
    EXPECT_EQ(stop["partner_name"], "acme");
    EXPECT_EQ(stop["session_duration"], 90);
    EXPECT_EQ(stop["reason"], "default");
    EXPECT_EQ(stop["is_first_run"], true);
    EXPECT_THAT(eventNamesOf(backend.stops()[0]), ElementsAre("session_start", "seen"));
    EXPECT_EQ((*(*stop["custom_events"].ifArray())[1].ifDictionary())["event_params"],
              (Dictionary{{"sku", "a1"}, {"n", 2}}));

    runSession([] {}, 30);
    ASSERT_THAT(backend.stops(), SizeIs(2));
    EXPECT_EQ(backend.stops()[1].payload["session_duration"], 30);
    EXPECT_EQ(backend.stops()[1].payload["is_first_run"], false);
    EXPECT_EQ(backend.starts()[1].payload["first_run"], Value());
    EXPECT_EQ(queuedStops(), 0U);

    // Between sessions the record still tells who and where.
    EXPECT_EQ(record().partner_name, "acme");
    EXPECT_EQ(record().udid, stored(keys::udidCache).stringOrEmpty());
    EXPECT_EQ(record().orbinel_id, record().udid);
    EXPECT_NE(record().device_attributes.ifDictionary(), nullptr);
}

// The backend can switch the library off, and on again with the next foreground period.
TEST_F(LifecycleTest, ADisabledLibraryStillAsksWhetherItMayRunAgain) {
    backend.answerOnce("/session/start", {.body = R"({"sdk_disabled": true})"});
    runSession([] { Orbinel::tagEvent("lost").build(); });
    EXPECT_TRUE(world().helper.sdkDisabled());
    EXPECT_THAT(backend.stops(), IsEmpty());

    runSession([] { Orbinel::tagEvent("kept").build(); });
    ASSERT_THAT(backend.stops(), SizeIs(1));
    EXPECT_THAT(eventNamesOf(backend.stops()[0]), ElementsAre("session_start", "kept"));
}

TEST_F(LifecycleTest, ValidatesTheStoredIdBeforeTheStart) {
    host.defaults->standard()->set(keys::orbinelId, "-bad");
    becomeActive();
    EXPECT_EQ(sinks.count("Received corrupted orbinel_id from ovd."), 1U);
    enterBackground();

    host.defaults->standard()->set(keys::orbinelId, "good-1.2");
    becomeActive();
    EXPECT_EQ(sinks.count("Received corrupted orbinel_id from ovd."), 1U);
    ASSERT_THAT(backend.starts(), SizeIs(2));
    EXPECT_EQ(backend.starts()[1].payload["orbinel_id"], "good-1.2");
    EXPECT_EQ(sinks.messages({"Started with orbinel id."}).size(), 2U);
}

TEST_F(LifecycleTest, HoldsTheMainThreadOnlyWhereTheProcessMayBeSuspendedAndNeverForLong) {
    using Clock = std::chrono::steady_clock;
    const auto timeOfBackground = [&] {
        becomeActive();
        const auto before = Clock::now();
        post(platform::notification_names::didEnterBackground);
        return Clock::now() - before;
    };
    backend.answer("/session/stop", {.never = true});
    EXPECT_GE(timeOfBackground(), std::chrono::milliseconds(300));
    host.application->setBackgroundMaySuspend(false);
    EXPECT_LT(timeOfBackground(), std::chrono::milliseconds(250));
}

// A permission that is read only after the application has left must not open a session in the background.
struct LateNotifications : platform::ForwardingNotifications {
    using ForwardingNotifications::ForwardingNotifications;
    void readSettings(std::function<void(platform::NotificationSettings)> completion) noexcept override {
        waiting.push_back(std::move(completion));
    }
    void answer() {
        for (auto& completion : std::exchange(waiting, {}))
            completion({platform::NotificationPermission::granted, false});
    }
    std::vector<std::function<void(platform::NotificationSettings)>> waiting;
};

TEST_F(LifecycleTest, IgnoresAnAnswerThatComesAfterItsForegroundPeriod) {
    const auto late = std::make_shared<LateNotifications>(host.notifications);
    relaunch([&](platform::Services& services) { services.notifications = late; });
    initialise();
    becomeActive();
    enterBackground();
    late->answer();
    host.settle();
    EXPECT_THAT(backend.starts(), IsEmpty());

    becomeActive();
    late->answer();
    host.settle();
    ASSERT_THAT(backend.starts(), SizeIs(1));
    EXPECT_EQ((*backend.starts()[0].payload["device_info"].ifDictionary())["push_enabled"], true);
    late->answer();
    shutdown();
    late->answer();
}

TEST_F(LifecycleTest, TellsTerminationAndServesWrappersOnlyWhenAskedTo) {
    post(platform::notification_names::willTerminate);
    EXPECT_EQ(sinks.count("appWillTerminate"), 1U);

    Orbinel::hybridApplicationDidBecomeActive();
    host.settle();
    EXPECT_THAT(backend.starts(), IsEmpty());
    Orbinel::setHybridSDKVersion("F-1.0.0");
    Orbinel::hybridApplicationDidBecomeActive();
    host.settle();
    EXPECT_THAT(backend.starts(), SizeIs(1));
}

}  // namespace
}  // namespace orbinel::testing
