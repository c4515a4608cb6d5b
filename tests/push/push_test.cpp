#include "push/push.hpp"

#include <thread>
#include <vector>

#include "inapp/view_tags.hpp"
#include "support/library_test.hpp"

namespace orbinel::testing {
namespace {

using ::testing::UnorderedElementsAre;

struct Target {
    void onCallback(const Dictionary& callback) { received.push_back(callback); }
    std::vector<Dictionary> received;
};

/// An initialised library whose application has registered a callback.
class Push : public LibraryTest {
protected:
    Push() {
        initialise();
        Orbinel::registerOrbinelCallbackWithSelector(&Target::onCallback, std::weak_ptr(target));
    }

    /// A push of the vendor's, with further entries.
    static Dictionary push(Dictionary more = {}) {
        Dictionary payload{{"aps", Dictionary{{"alert", "Hi"}}},
                           {"source", "Orbinel"},
                           {"camp_id", std::int64_t{71}},
                           {"camp_type", 2},
                           {"variant_id", "b"}};
        for (const auto& [key, value] : more) payload.set(key, value);
        return payload;
    }
    static Dictionary without(Dictionary payload, std::string_view key) {
        payload.erase(key);
        return payload;
    }
    void open(const Dictionary& payload) {
        Orbinel::handlePushLogWithUserInfo(payload);
        host.settle();
    }
    /// The one callback since the last call; empty where there was none.
    Dictionary told() {
        host.settle();
        EXPECT_LE(target->received.size(), 1U);
        auto one = target->received.empty() ? Dictionary() : target->received.front();
        target->received.clear();
        return one;
    }
    Dictionary dataTold() {
        const auto callback = told();
        return callback["data"].ifDictionary() != nullptr ? *callback["data"].ifDictionary() : Dictionary();
    }
    std::vector<std::string> openedOutside() {
        std::vector<std::string> urls;
        for (const auto& opened : host.application->opened()) urls.push_back(opened.url);
        return urls;
    }
    bool isBrowserOpen() { return host.views->view(kPUSHBROWSERVIEWTAG).has_value(); }
    void leave(std::string_view key, Value value) { group()->set(key, std::move(value)); }
    Value left(std::string_view key) { return group()->value(key); }
    std::shared_ptr<platform::DefaultsStore> group() { return host.defaults->appGroup("group.acme"); }

    std::shared_ptr<Target> target = std::make_shared<Target>();
};

TEST_F(Push, IsLoggedOnceInASessionAndToldEachTime) {
    const auto payload = push({{"journey_id", "9007199254740993"}, {"colour", "red"}});
    const Dictionary log{
        {"camp_id", 71}, {"camp_type", 2}, {"variant_id", "b"}, {"journey_id", std::int64_t{9007199254740993}}};
    open(Dictionary{{launchOptionsRemoteNotificationKey, payload}, {"other", 1}});
    EXPECT_THAT(record().push_logs, ElementsAre(log));
    EXPECT_THAT(eventNames(), ElementsAre("session_start_from_push", "push_session"));
    EXPECT_EQ(record().custom_events[1].event_params->snapshot()["variant_id"], "b");
    EXPECT_EQ(told(), (Dictionary{{"type", 0},
                                  {"data", Dictionary{{"journey_id", "9007199254740993"}, {"colour", "red"}}},
                                  {"source", "Orbinel"}}));
    EXPECT_EQ(sinks.feeds("handlePushLog").at(0).data, payload);
    EXPECT_EQ(sinks.feeds("pushReceived").at(0).data["type"], 0);
    EXPECT_TRUE(sinks.feeds("pushReceived")[0].shouldFeed);

    Orbinel::triggerPushProcessWithUserInfo(payload);
    EXPECT_FALSE(told().empty());
    EXPECT_THAT(record().push_logs, SizeIs(1));
    EXPECT_THAT(eventNames(), SizeIs(2));
    open(push({{"camp_id", "71"}}));  // a text is another campaign
    EXPECT_THAT(record().push_logs, SizeIs(2));

    runSession([] {});
    EXPECT_THAT(*backend.stops().at(0).payload["push_logs"].ifArray(), SizeIs(2));
    open(payload);
    EXPECT_THAT(record().push_logs, SizeIs(1));
}

TEST_F(Push, IsLoggedOnceAlsoWhereThreadsHandleItTogether) {
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) threads.emplace_back([] { Orbinel::handlePushLogWithUserInfo(push()); });
    for (auto& thread : threads) thread.join();
    EXPECT_THAT(record().push_logs, SizeIs(1));
    EXPECT_THAT(eventNames(), UnorderedElementsAre("session_start_from_push", "push_session"));
    host.settle();
    EXPECT_THAT(target->received, SizeIs(4));
}

TEST_F(Push, LeavesWhatIsNoneOrWasSentByAnother) {
    Value deep = 1;
    for (int i = 0; i < maximumValueDepth; ++i) deep = Array{std::move(deep)};
    const auto launchedBy = [](Value value) {
        return Dictionary{{"aps", Dictionary()}, {launchOptionsRemoteNotificationKey, std::move(value)}};
    };
    for (const auto& none : {Dictionary(), without(push(), "aps"), push({{"aps", Null{}}}), push({{"deep", deep}}),
                             launchedBy(Null{}), launchedBy(without(push(), "aps"))}) {
        EXPECT_EQ(Orbinel::getPushInfo(none), std::nullopt);
        open(none);
    }
    EXPECT_THAT(sinks.feeds("handlePushLog"), IsEmpty());
    EXPECT_EQ(Orbinel::getPushInfo(push()), push());

    const std::string contents = R"([{"variable_name": "title", "new_value": "Tried"}])";
    for (const auto& source : {Value("orbinel"), Value(7), Value()}) {
        open(push({{"source", source}, {"test_contents", contents}}));
    }
    EXPECT_EQ(Orbinel::getContentStringWithName("title", "-", OrbinelVariableTypeContent), "Tried");
    EXPECT_THAT(record().push_logs, IsEmpty());
    EXPECT_TRUE(told().empty());

    for (const auto* key : {"camp_id", "camp_type", "variant_id"}) {
        open(without(push(), key));
        EXPECT_FALSE(told().empty()) << key;
        open(push({{key, Null{}}}));
        EXPECT_FALSE(told().empty()) << key;
    }
    EXPECT_THAT(record().push_logs, IsEmpty());
    EXPECT_THAT(sinks.feeds("sendError"), IsEmpty());
}

TEST_F(Push, ServesMessagesForATryAndForLater) {
    const Dictionary content{{"type", 4}, {"template_url", "https://pages.test/t"}};
    const auto text = host.json->serialise(content, platform::JsonStyle::compact).value();
    const std::string forLater = R"({"inapp_id": 5, "trigger": "seen", "content": {}})";
    const auto waiting = [] { return world().inapps.nonEventBasedInapps().contains("seen-1"); };
    for (const auto& broken : {Value("{"), Value("[]"), Value(7)}) {
        open(push({{"inapp_test", broken}, {"push_inapp", forLater}, {"test_contents", broken}}));
        open(push({{"push_inapp", broken}}));
    }
    EXPECT_FALSE(waiting());
    EXPECT_FALSE(world().campaignSelection.doesTestInAppExist());

    open(push({{"push_inapp", forLater}}));
    EXPECT_TRUE(waiting());
    for (const auto& delivered : {Value(content), Value(text)}) {
        open(push({{"inapp_test", delivered}, {"push_inapp", forLater}}));
        EXPECT_FALSE(waiting());  // a message for a try takes the place of all others
        EXPECT_TRUE(world().campaignSelection.doesTestInAppExist());
        EXPECT_TRUE(world().inappPresentation.isInAppOnTheScreen());
        world().campaignSelection.setTestInAppExistence(false);
        Orbinel::removeInapp();
        host.settle();
    }
    EXPECT_THAT(sinks.feeds("testInAppReceived"), SizeIs(2));
    EXPECT_EQ(sinks.feeds("testInAppReceived")[1].data["inapp_test"], text);
    EXPECT_THAT(sinks.feeds("sendError"), IsEmpty());
}

TEST_F(Push, OpensOneAddressASecondLater) {
    host.application->setBundle(
        {.version = "1", .identifier = "a", .preferredLocalisation = {}, .urlSchemes = {"acme"}, .information = {}});
    const std::string inside = "https://shop.test/in";
    const std::string outside = "https://shop.test/out";
    open(push({{"orb_dl_internal", inside}, {"orb_dl_external", outside}}));
    host.advance(0.9);
    EXPECT_FALSE(isBrowserOpen());
    host.advance(0.2);
    EXPECT_TRUE(isBrowserOpen());
    ASSERT_TRUE(host.views->tap(kPUSHBROWSERCLOSEBUTTONVIEWTAG));
    host.settle();

    open(push({{"orb_dl_external", outside}, {"orb_dl_url_scheme", "acme://cart"}}));
    open(push({{"orb_dl_url_scheme", "acme://cart"}}));
    open(push({{"orb_dl_internal", "tel:+31"}}));  // nothing for a browser
    for (const auto& key : {"orb_dl_internal", "orb_dl_external", "orb_dl_url_scheme"}) {
        for (const auto& refused : {Value("javascript:alert(1)"), Value("file:///etc/passwd"), Value("other://x"),
                                    Value("data:text/html,x"), Value("no address"), Value(7), Value("")}) {
            open(push({{key, refused}}));
        }
    }
    host.advance(2);
    EXPECT_FALSE(isBrowserOpen());
    EXPECT_THAT(openedOutside(), ElementsAre(outside, "acme://cart", "tel:+31"));

    open(push({{"orb_dl_external", outside}}));
    relaunch();
    host.advance(2);
    EXPECT_THAT(openedOutside(), SizeIs(3));  // what waits ends with the library
}

TEST_F(Push, TakesAnItemPickedInACarouselForFiveSeconds) {
    const Dictionary links{{"orb_dl_external", "https://shop.test/kettle"}, {"item", 3}, {"camp_type", 9}};
    const auto pick = [&](Value moment) {
        leave("orbinelCarouselID", "carousel");
        leave("orbinelCarouselDeepLink", links);
        leave("orbinelCarouselDeepLinkTimestamp", std::move(moment));
    };
    const auto payload = push({{"orb_dl_internal", "https://shop.test/all"}, {"colour", "red"}});
    const auto now = static_cast<std::int32_t>(begin);
    for (const auto& fresh : {Value(now - 5), Value(std::to_string(now - 5)), Value()}) {
        pick(fresh);
        open(payload);
        EXPECT_EQ(dataTold(), (Dictionary{{"orb_dl_external", "https://shop.test/kettle"}, {"item", 3}}));
        EXPECT_EQ(left("orbinelCarouselID"), "carousel");
    }
    EXPECT_EQ((*record().push_logs.at(0).ifDictionary())["camp_type"], 2);

    for (const auto& stale : {Value(now - 6), Value("soon")}) {
        pick(stale);
        open(payload);
        EXPECT_EQ(dataTold(), (Dictionary{{"orb_dl_internal", "https://shop.test/all"}, {"colour", "red"}}));
        EXPECT_TRUE(left("orbinelCarouselID").isAbsent() && left("orbinelCarouselDeepLink").isAbsent());
    }
    for (const auto& nothing : {Value("https://shop.test/kettle"), Value(Dictionary())}) {
        pick(now);
        leave("orbinelCarouselDeepLink", nothing);
        open(payload);
        EXPECT_EQ(dataTold()["colour"], "red");
    }
    host.advance(1.6);  // rounded: two seconds later
    pick(now - 3);
    open(payload);
    EXPECT_EQ(dataTold()["item"], 3);
    runSession([] {});
    EXPECT_TRUE(left("orbinelCarouselDeepLink").isAbsent() && left("orbinelCarouselDeepLinkTimestamp").isAbsent());
}

TEST_F(Push, ThatComesInTheForegroundIsTheApplicationsFirst) {
    const auto present = [&](const Dictionary& payload) {
        leave("orbinelCarouselDeepLink", Dictionary{{"item", 3}});
        world().push.willPresentNotification(payload);
        host.settle();
    };
    const auto foreground = std::make_shared<Target>();
    Orbinel::setForegroundPushCallback(&Target::onCallback, std::weak_ptr(foreground));
    present(push());
    EXPECT_THAT(foreground->received, ElementsAre(push()));
    EXPECT_EQ(told()["type"], 0);
    EXPECT_TRUE(world().push.foregroundPush());
    EXPECT_FALSE(left("orbinelCarouselDeepLink").isAbsent());

    present(push({{"inapp_test", Dictionary()}}));
    EXPECT_THAT(foreground->received, SizeIs(1));
    EXPECT_TRUE(left("orbinelCarouselDeepLink").isAbsent());
    Orbinel::setActiveForegroundPushView();
    present(push());
    EXPECT_THAT(foreground->received, SizeIs(2));
    EXPECT_TRUE(left("orbinelCarouselDeepLink").isAbsent());
    EXPECT_THAT(record().push_logs, SizeIs(1));
    runSession([] {});
    EXPECT_FALSE(world().push.foregroundPush());

    Orbinel::disableAutoIntegration();  // then the application hands pushes over itself
    target->received.clear();
    present(push());
    EXPECT_THAT(foreground->received, SizeIs(3));
    EXPECT_TRUE(told().empty());
}

TEST_F(Push, WaitsUnderAWrapperUntilTheApplicationHasBeenActive) {
    Orbinel::setHybridSDKVersion("F-1.0.0");
    open(push({{"camp_id", 1}}));
    open(push({{"camp_id", 2}}));
    EXPECT_TRUE(told().empty());
    becomeActive();
    ASSERT_THAT(record().push_logs, SizeIs(1));
    EXPECT_EQ((*record().push_logs[0].ifDictionary())["camp_id"], 2);
    enterBackground();
    open(push({{"camp_id", 3}}));
    EXPECT_THAT(record().push_logs, SizeIs(1));
    becomeActive();
    EXPECT_THAT(record().push_logs, SizeIs(1));
}

TEST_F(Push, TakesOverWhatTheExtensionLeft) {
    leave("orbinelPlaceholderLog", Dictionary{{"camp_id", 5}, {"camp_type", 1}, {"variant_id", 1}, {"more", 1}});
    runSession([this] {
        EXPECT_FALSE(left("orbinelPlaceholderLog").isAbsent());
        world().push.handlePushLog(push(), true);  // a plain notification
        leave("orbinelInteractivePushSeen", "1");
        leave("orbinelCarouselCampId", 2);
        world().push.handlePushLog(push(), false);
        EXPECT_THAT(record().interactive_logs, IsEmpty());
        Orbinel::trackInteractiveLogWithUserInfo(Dictionary());
        EXPECT_FALSE(left("orbinelCarouselCampId").isAbsent());
        world().push.handlePushLog(push({{"journey_id", 4}}), true);
        EXPECT_TRUE(left("orbinelCarouselCampId").isAbsent() && left("orbinelInteractivePushSeen").isAbsent());
    });
    EXPECT_TRUE(left("orbinelPlaceholderLog").isAbsent());
    const auto stop = backend.stops().at(0).payload;
    const auto& logs = *stop["push_logs"].ifArray();
    ASSERT_THAT(logs, SizeIs(2));
    EXPECT_EQ(logs[1], Value(Dictionary{{"camp_id", 5}, {"camp_type", 1}, {"variant_id", 1}}));
    EXPECT_THAT(*stop["interactive_logs"].ifArray(), ElementsAre(Dictionary{{"camp_id", 71},
                                                                            {"camp_type", 2},
                                                                            {"variant_id", "b"},
                                                                            {"journey_id", 4},
                                                                            {"orbinelInteractivePushSeen", "1"},
                                                                            {"orbinelCarouselCampId", 2}}));
    leave("orbinelPlaceholderLog", "garbage");
    runSession([] {});
    EXPECT_TRUE(left("orbinelPlaceholderLog").isAbsent());
    EXPECT_THAT(sinks.feeds("sendError"), IsEmpty());
}

TEST_F(Push, TokensTravelWithTheDevice) {
    const auto sent = [] { return (*world().deviceAttributes.getDeviceAttributes().ifDictionary())["device_token"]; };
    const std::vector<std::uint8_t> token{0x00, 0xAB, 0x9f};
    Orbinel::registerDeviceTokenWithApplication(host.application.get(), token);
    EXPECT_EQ(sent(), "00ab9f");
    EXPECT_EQ(sinks.feeds("registerDeviceToken").at(0).data["deviceToken"], "00ab9f");
    Orbinel::registerDeviceTokenWithApplication(nullptr, {});
    Orbinel::setPushToken(nullptr);
    EXPECT_EQ(sent(), "00ab9f");
    Orbinel::setPushToken("Another:Token");
    EXPECT_EQ(sent(), "Another:Token");
}

TEST_F(Push, AnAddressThatOpenedTheApplicationIsNotedWhereItLeadsToTheVendor) {
    const std::string final = "https://shop.test/kettles?isOrb=0&x=%26&isOrb=1#isOrb=2";
    const auto link = [&](const std::string& url, const std::string& type = browsingWebActivityType) {
        Orbinel::handleUniversalLink({type, url});
        host.settle();
        return record().universal_link;
    };
    backend.answer("short.test/k", {.status = 302, .body = "", .headers = {{"Location", final}}});
    backend.answer("short.test/broken", {.status = std::nullopt});
    backend.answer("short.test/open", {.never = true});
    for (const auto* url : {"https://short.test/broken", "https://shop.test/?isOrb=10", "https://shop.test/?isOrb",
                            "https://shop.test/#?isOrb=1", "acme://shop?isOrb=1", "", "https://short.test/open"}) {
        EXPECT_EQ(link(url), std::nullopt) << url;
    }
    const auto requests = host.http->sent().size();
    EXPECT_EQ(link("https://short.test/k", "com.acme.reading"), std::nullopt);
    Orbinel::handleUniversalLink({browsingWebActivityType, std::nullopt});
    world().helper.setSdkDisabled(true);
    EXPECT_EQ(link("https://short.test/k"), std::nullopt);
    EXPECT_EQ(host.http->sent().size(), requests);

    world().helper.setSdkDisabled(false);
    EXPECT_EQ(link("https://short.test/k"), final);
    EXPECT_EQ(host.http->sent().back().method, "GET");
    EXPECT_EQ(link("https://shop.test/?a=b"), final);
    EXPECT_EQ(link("https://shop.test/?%69sOrb=%31"), "https://shop.test/?%69sOrb=%31");
    shutdown();
    EXPECT_EQ(host.http->inFlight(), 0U);
}

}  // namespace
}  // namespace orbinel::testing
