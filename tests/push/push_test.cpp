#include "push/push.hpp"

#include <thread>

#include "inapp/view_tags.hpp"
#include "support/library_test.hpp"

namespace orbinel::testing {
namespace {

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

    /// A push of the vendor's, with further entries; an absent one takes an entry away.
    static Dictionary push(const Dictionary& more = {}) {
        Dictionary payload{{"aps", Dictionary{{"alert", "Hi"}}},
                           {"source", "Orbinel"},
                           {"camp_id", std::int64_t{71}},
                           {"camp_type", 2},
                           {"variant_id", "b"}};
        for (const auto& [key, value] : more) payload.set(key, value);
        payload.eraseIf([](const auto& entry) { return entry.second.isAbsent(); });
        return payload;
    }
    /// Opens the push and gives the callback's data; empty where the application is told nothing.
    Dictionary open(const Dictionary& payload) {
        target->received.clear();
        Orbinel::handlePushLogWithUserInfo(payload);
        host.settle();
        const auto* data = target->received.empty() ? nullptr : target->received.back()["data"].ifDictionary();
        return data != nullptr ? *data : Dictionary();
    }
    void leave(std::string_view key, Value value) { group->set(key, std::move(value)); }
    bool isLeft(std::string_view key) { return !group->value(key).isAbsent(); }

    std::shared_ptr<platform::DefaultsStore> group = host.defaults->appGroup("group.acme");
    std::shared_ptr<Target> target = std::make_shared<Target>();
};

TEST_F(Push, IsLoggedOnceInASessionAndToldEachTime) {
    const auto payload = push({{"journey_id", "9007199254740993"}, {"colour", "red"}});
    const Dictionary log{
        {"camp_id", 71}, {"camp_type", 2}, {"variant_id", "b"}, {"journey_id", std::int64_t{9007199254740993}}};
    const Dictionary data{{"journey_id", "9007199254740993"}, {"colour", "red"}};
    EXPECT_EQ(open(Dictionary{{launchOptionsRemoteNotificationKey, payload}, {"other", 1}}), data);
    EXPECT_THAT(target->received, ElementsAre(Dictionary{{"type", 0}, {"data", data}, {"source", "Orbinel"}}));
    EXPECT_THAT(record().push_logs, ElementsAre(log));
    EXPECT_THAT(eventNames(), ElementsAre("session_start_from_push", "push_session"));
    EXPECT_EQ(record().custom_events[1].event_params->snapshot()["variant_id"], "b");
    EXPECT_EQ(sinks.feeds("handlePushLog").at(0).data, payload);

    std::vector<std::thread> threads;
    for (const auto& again : {payload, push({{"camp_id", "71"}})}) {  // a text is another campaign
        for (int i = 0; i < 2; ++i) threads.emplace_back([=] { Orbinel::triggerPushProcessWithUserInfo(again); });
    }
    for (auto& thread : threads) thread.join();
    host.settle();
    EXPECT_THAT(target->received, SizeIs(5));
    EXPECT_THAT(eventNames(), SizeIs(4));

    runSession([] {});
    EXPECT_THAT(*backend.stops().at(0).payload["push_logs"].ifArray(), SizeIs(2));
    open(payload);
    EXPECT_THAT(record().push_logs, ElementsAre(log));
}

TEST_F(Push, LeavesWhatIsNoneOrWasSentByAnother) {
    Value deep = 1;
    for (int i = 0; i < maximumValueDepth; ++i) deep = Array{std::move(deep)};
    const std::string launchedBy = launchOptionsRemoteNotificationKey;
    for (const auto& none : {push({{"aps", Value()}}), push({{"aps", Null{}}}), push({{"deep", deep}}),
                             push({{launchedBy, Null{}}}), push({{launchedBy, push({{"aps", Value()}})}})}) {
        EXPECT_EQ(Orbinel::getPushInfo(none), std::nullopt);
        open(none);
    }
    EXPECT_THAT(sinks.feeds("handlePushLog"), IsEmpty());

    const std::string contents = R"([{"variable_name": "title", "new_value": "Tried"}])";
    for (const auto& source : {Value("orbinel"), Value(7), Value()}) {
        EXPECT_THAT(open(push({{"source", source}, {"mine", 1}, {"test_contents", contents}})), IsEmpty());
    }
    EXPECT_EQ(Orbinel::getContentStringWithName("title", "-", OrbinelVariableTypeContent), "Tried");
    for (const auto* key : {"camp_id", "camp_type", "variant_id"}) {
        for (const auto& unnamed : {Value(), Value(Null{})}) {
            EXPECT_EQ(open(push({{key, unnamed}, {"mine", 1}})), (Dictionary{{"mine", 1}}));
        }
    }
    EXPECT_THAT(record().push_logs, IsEmpty());
}

TEST_F(Push, ServesMessagesForATryAndForLater) {
    const Dictionary content{{"type", 4}, {"template_url", "https://pages.test/t"}};
    const auto text = host.json->serialise(content, platform::JsonStyle::compact).value();
    const std::string forLater = R"({"inapp_id": 5, "trigger": "seen", "content": {}})";
    const auto waiting = [] { return world().inapps.nonEventBasedInapps().contains("seen-1"); };
    auto& campaigns = world().campaignSelection;
    for (const auto& broken : {Value("{"), Value("[]"), Value(7)}) {
        open(push({{"inapp_test", broken}, {"push_inapp", forLater}, {"test_contents", broken}}));
        open(push({{"push_inapp", broken}}));
    }
    EXPECT_FALSE(waiting() || campaigns.doesTestInAppExist());

    open(push({{"push_inapp", forLater}}));
    EXPECT_TRUE(waiting());
    for (const auto& delivered : {Value(content), Value(text)}) {
        open(push({{"inapp_test", delivered}, {"push_inapp", forLater}}));
        EXPECT_FALSE(waiting());  // a message for a try takes the place of all others
        EXPECT_TRUE(campaigns.doesTestInAppExist() && world().inappPresentation.isInAppOnTheScreen());
        campaigns.setTestInAppExistence(false);
        Orbinel::removeInapp();
    }
    EXPECT_EQ(sinks.feeds("testInAppReceived").at(1).data["inapp_test"], text);
    EXPECT_THAT(sinks.feeds("sendError"), IsEmpty());
}

TEST_F(Push, OpensOneAddressASecondLater) {
    auto bundle = host.application->bundle();
    bundle.urlSchemes = {"acme"};
    host.application->setBundle(bundle);
    const std::string web = "https://shop.test/";
    open(push({{"orb_dl_internal", web}, {"orb_dl_external", "https://elsewhere.test/"}}));
    host.advance(0.9);
    EXPECT_FALSE(host.views->tap(kPUSHBROWSERCLOSEBUTTONVIEWTAG));
    host.advance(0.2);
    EXPECT_TRUE(host.views->tap(kPUSHBROWSERCLOSEBUTTONVIEWTAG));
    host.settle();

    open(push({{"orb_dl_external", web}, {"orb_dl_url_scheme", "acme://cart"}}));
    open(push({{"orb_dl_url_scheme", "acme://cart"}}));
    open(push({{"orb_dl_internal", "tel:+31"}}));  // nothing for a browser
    for (const auto& key : {"orb_dl_internal", "orb_dl_external", "orb_dl_url_scheme"}) {
        for (const auto& refused : {Value("javascript:alert(1)"), Value("file:///etc/passwd"), Value("other://x"),
                                    Value("data:text/html,x"), Value("no address"), Value(7), Value("")}) {
            open(push({{key, refused}}));
        }
    }
    host.advance(2);
    open(push({{"orb_dl_external", web}}));
    relaunch();  // what waits ends with the library
    host.advance(2);
    EXPECT_FALSE(host.views->tap(kPUSHBROWSERCLOSEBUTTONVIEWTAG));
    std::vector<std::string> opened;
    for (const auto& one : host.application->opened()) opened.push_back(one.url);
    EXPECT_THAT(opened, ElementsAre(web, "acme://cart", "tel:+31"));
}

TEST_F(Push, TakesAnItemPickedInACarouselForFiveSeconds) {
    const Dictionary chosen{{"orb_dl_external", "https://shop.test/kettle"}, {"item", 3}};
    const auto payload = push({{"orb_dl_internal", "https://shop.test/all"}, {"colour", "red"}});
    const auto openAfterPicking = [&](Value moment, Value links) {
        leave("orbinelCarouselID", "carousel");
        leave("orbinelCarouselDeepLink", std::move(links));
        leave("orbinelCarouselDeepLinkTimestamp", std::move(moment));
        return open(payload);
    };
    host.advance(0.6);  // the moment is rounded
    const auto now = static_cast<std::int32_t>(begin) + 1;
    auto links = chosen;
    links.set("camp_type", 9);  // the library's own: neither told nor logged
    for (const auto& fresh : {Value(now - 5), Value(std::to_string(now - 5)), Value()}) {
        EXPECT_EQ(openAfterPicking(fresh, links), chosen);
    }
    EXPECT_EQ((*record().push_logs.at(0).ifDictionary())["camp_type"], 2);
    for (const auto& nothing : {Value("https://shop.test/kettle"), Value(Dictionary())}) {
        EXPECT_EQ(openAfterPicking(now, nothing)["colour"], "red");
    }
    EXPECT_TRUE(isLeft("orbinelCarouselID"));
    for (const auto& stale : {Value(now - 6), Value("soon")}) {
        EXPECT_EQ(openAfterPicking(stale, links)["colour"], "red");
        EXPECT_FALSE(isLeft("orbinelCarouselID") || isLeft("orbinelCarouselDeepLink"));
    }
}

TEST_F(Push, ThatComesInTheForegroundIsTheApplicationsFirst) {
    const auto present = [&](const Dictionary& payload) {
        leave("orbinelCarouselDeepLink", Dictionary{{"item", 3}});
        leave("orbinelCarouselDeepLinkTimestamp", static_cast<std::int32_t>(begin));
        world().push.willPresentNotification(payload);
        host.settle();
        return isLeft("orbinelCarouselDeepLink") || isLeft("orbinelCarouselDeepLinkTimestamp");
    };
    const auto foreground = std::make_shared<Target>();
    Orbinel::setForegroundPushCallback(&Target::onCallback, std::weak_ptr(foreground));
    EXPECT_TRUE(present(push()));
    EXPECT_THAT(foreground->received, ElementsAre(push()));
    EXPECT_FALSE(present(push({{"inapp_test", Dictionary()}})));
    EXPECT_THAT(foreground->received, SizeIs(1));
    Orbinel::setActiveForegroundPushView();
    EXPECT_FALSE(present(push()));
    EXPECT_THAT(target->received, SizeIs(3));

    EXPECT_TRUE(world().push.foregroundPush());
    runSession([&] { leave("orbinelCarouselDeepLink", "picked"); });
    EXPECT_FALSE(world().push.foregroundPush() || isLeft("orbinelCarouselDeepLink"));
    Orbinel::disableAutoIntegration();  // then the application hands pushes over itself
    present(push());
    EXPECT_THAT(foreground->received, SizeIs(3));
    EXPECT_THAT(record().push_logs, IsEmpty());
}

TEST_F(Push, WaitsUnderAWrapperUntilTheApplicationHasBeenActive) {
    Orbinel::setHybridSDKVersion("F-1.0.0");
    open(push({{"camp_id", 1}}));
    EXPECT_THAT(open(push({{"camp_id", 2}, {"mine", 1}})), IsEmpty());
    becomeActive();
    Orbinel::hybridApplicationDidBecomeActive();
    EXPECT_THAT(record().push_logs, ElementsAre(Dictionary{{"camp_id", 2}, {"camp_type", 2}, {"variant_id", "b"}}));
    enterBackground();
    EXPECT_THAT(open(push({{"mine", 1}})), SizeIs(1));
}

TEST_F(Push, NotesWhatThePersonDidInTheNotificationOnce) {
    world().push.handlePushLog(push(), true);  // a plain notification
    leave("orbinelCarouselCampId", 2);
    world().push.handlePushLog(push(), false);
    EXPECT_THAT(record().interactive_logs, IsEmpty());
    leave("orbinelInteractivePushSeen", "yes");
    for (int i = 0; i < 2; ++i) world().push.handlePushLog(push(), true);
    EXPECT_THAT(record().interactive_logs, ElementsAre(Dictionary{{"camp_id", 71},
                                                                  {"camp_type", 2},
                                                                  {"variant_id", "b"},
                                                                  {"orbinelCarouselCampId", 2},
                                                                  {"orbinelInteractivePushSeen", "yes"}}));
    EXPECT_FALSE(isLeft("orbinelCarouselCampId"));
    leave("orbinelCarouselCampId", 3);
    Orbinel::trackInteractiveLogWithUserInfo(Dictionary());  // of a campaign without a name
    Orbinel::trackInteractiveLogWithUserInfo(push());
    EXPECT_THAT(record().interactive_logs, SizeIs(1));
}

TEST_F(Push, AnAddressThatOpenedTheApplicationIsNotedWhereItLeadsToTheVendor) {
    const std::string final = "https://shop.test/kettles?isOrb=0&x=%26&isOrb=1";
    const auto link = [&](const std::string& url, const std::string& type = browsingWebActivityType) {
        Orbinel::handleUniversalLink({type, url});
        host.settle();
        return record().universal_link;
    };
    backend.answer("short.test/k", {.status = 302, .body = "", .headers = {{"Location", final}}});
    backend.answer("short.test/broken?isOrb=1", {.status = std::nullopt});
    backend.answer("short.test/open", {.never = true});
    for (const auto* url : {"https://short.test/broken?isOrb=1", "https://shop.test/?isOrb=10",
                            "https://shop.test/?isOrb", "https://shop.test/#?isOrb=1", "https://short.test/open"}) {
        EXPECT_EQ(link(url), std::nullopt) << url;
    }
    const auto requests = host.http->sent().size();
    EXPECT_EQ(link("acme://shop?isOrb=1"), std::nullopt);
    EXPECT_EQ(link("https://short.test/k", "com.acme.reading"), std::nullopt);
    EXPECT_EQ(host.http->sent().size(), requests);
    EXPECT_EQ(link("https://short.test/k"), final);
    EXPECT_EQ(link("https://shop.test/?a=b"), final);
    EXPECT_EQ(link("https://shop.test/?%69sOrb=%31"), "https://shop.test/?%69sOrb=%31");
    shutdown();
    EXPECT_TRUE(host.http->waitUntilIdle());
    EXPECT_EQ(host.http->inFlight(), 0U);
}

}  // namespace
}  // namespace orbinel::testing
