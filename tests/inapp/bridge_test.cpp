#include <array>
#include <cstdio>

#include "inapp/kept_effects.hpp"
#include "inapp/script_call.hpp"
#include "inapp/template_payload.hpp"

namespace orbinel::testing {

namespace {

using headless::Opened;
using ::testing::Not;

/// A message that is presented, and what its page says.
class TemplatePages : public LibraryTest {
protected:
    TemplatePages() {
        for (auto* screen : {&w.templateMessages.screen, &w.templateStore.screen, &w.inappButtons.screen}) {
            rebind(*screen, effects);
        }
        for (auto* logging : {&w.templateStore.logging, &w.inappButtons.logging}) rebind(*logging, effects);
        rebind(w.inappButtons.remoteNotifications, effects);
        w.templateEvents.addObserverForEventInapps();
        present({{"inapp_id", std::int64_t{42}}, {"variant_id", "7"}});
        w.templateStore.setTemplateStoreCallback({std::weak_ptr(callbacks), &KeptCallbacks::take});
        w.inappButtons.setInappButtonClickCallback({std::weak_ptr(callbacks), &KeptCallbacks::take});
        host.device->change([](platform::DeviceFacts& facts) { facts.osVersion = "16.4"; });
        host.application->setBundle({"1.0.0", "com.acme.shop", "en", {"acme"}, {}});
    }
    ~TemplatePages() override { shutdown(); }  // while the effects stand

    void present(Dictionary inapp) { w.presentedInapp.present(std::make_shared<const Dictionary>(std::move(inapp))); }
    /// A navigation of the page with this payload, as "encodeURIComponent" writes it.
    void say(const std::string& json) {
        std::string url = "orbinelurl://";
        for (const char c : json) {
            std::array<char, 4> escape{};
            std::snprintf(escape.data(), escape.size(), "%%%02X", static_cast<unsigned>(static_cast<unsigned char>(c)));
            url += escape.data();
        }
        w.templateBridge.processCustomScreenClicks(url);
    }
    std::vector<std::string> effectsOf(const std::string& json) {
        say(json);
        host.settle();
        return effects.taken();
    }
    static std::vector<EventRecord> events() { return record().custom_events; }
    std::vector<std::string> opened() {
        std::vector<std::string> urls;
        for (const auto& one : host.application->opened()) urls.push_back(one.url);
        return urls;
    }

    World& w = world();
    KeptEffects effects;
    std::shared_ptr<KeptCallbacks> callbacks = std::make_shared<KeptCallbacks>();
};

constexpr auto refusal = "Received template datas couldn't be serialized.";

// --- From the navigation to the actions ---

TEST_F(TemplatePages, WhatIsNoPayloadIsLoggedAndDropped) {
    const std::string deep = R"({"dismiss":)" + std::string(600, '[') + std::string(600, ']') + "}";
    const std::string large = R"({"dismiss":3,"x":")" + std::string(1 << 20, 'x') + "\"}";
    for (const std::string& payload : std::vector<std::string>{"", "not json", "[]", "3", R"({"dismiss":3)",
                                                               "{\"dismiss\":3,\"x\":\"\xFF\"}", deep, large}) {
        sinks.clear();
        EXPECT_THAT(effectsOf(payload), IsEmpty()) << payload.substr(0, 40);
        EXPECT_EQ(sinks.count(refusal), 1u) << payload.substr(0, 40);
        EXPECT_THAT(sinks.feeds("processTemplateStoreURL"), IsEmpty());
    }
    sinks.clear();
    EXPECT_THAT(effectsOf(R"({"dismiss":3,"nobody":{"knows":1},"copy":null})"), ElementsAre("close 3", "remove"));
    EXPECT_EQ(sinks.count(refusal), 0u);
    EXPECT_THAT(sinks.feeds("processTemplateStoreURL"), SizeIs(1));
    ASSERT_EQ(sinks.records().front().message, "Received data from WebView.");
    EXPECT_THAT((*sinks.records().front().customAttributes)["template_data"].stringOrEmpty(), StartsWith("{\"dismiss"));
    EXPECT_EQ(host.pasteboard->text(), std::nullopt);
}

TEST(TemplatePayloads, LosePercentEncodingAndEveryScheme) {
    using template_payload::decode;
    EXPECT_EQ(decode("orbinelurl://%7b%22a%22:%22100%25%20%C3%BC%22%7D"), "{\"a\":\"100% \xC3\xBC\"}");
    EXPECT_EQ(decode("orbinelurl://%4Gorbinelurl%3A//%7%"), "%4G%7%");
    constexpr auto longest = template_payload::longestText;
    EXPECT_EQ(decode("orbinelurl://" + std::string(longest, 'x'))->size(), longest);
    EXPECT_EQ(decode("orbinelurl://" + std::string(longest + 1, 'x')), std::nullopt);
}

TEST(ScriptCalls, CannotBeBrokenOutOf) {
    EXPECT_EQ(sdkCallbackMethod(3, "{\"a\":\"</script>\u2028\u2029\xE2\x80\xA6)\"}"),
              "sdkCallbackMethod(3, {\"a\":\"\\u003c/script>\\u2028\\u2029\xE2\x80\xA6)\"})");
}

TEST_F(TemplatePages, ActionsRunInTheirOwnOrder) {
    EXPECT_THAT(effectsOf(R"({"internalUrl":"https://a.test/x","adjust_template":{"position":1},"dismiss":2,
                              "input_begin":true,"send_click_data":{"button":"b1"},"event":[{"name":"seen"}]})"),
                ElementsAre("click b1", "begin editing", "close 2", "remove", "adjust 1", "browser https://a.test/x"));
    EXPECT_THAT(events(), SizeIs(1));
}

TEST_F(TemplatePages, AreRemovedWithOrWithoutALogAndOpenWhereTheyLeadTo) {
    EXPECT_THAT(effectsOf(R"({"dismiss":3,"redirection":"https://a.test/p"})"),
                ElementsAre("close 3", "remove", "remove"));
    EXPECT_THAT(effectsOf(R"({"dismiss":{"dismiss":"5"}})"), ElementsAre("close 5", "remove"));
    EXPECT_THAT(effectsOf(R"({"dismiss":{"redirection":"tel:+4912"}})"), ElementsAre("remove"));
    EXPECT_THAT(effectsOf(R"({"silent_dismiss":{"dismiss":3,"redirection":"acme://cart"}})"),
                ElementsAre("remove silently", "remove"));
    EXPECT_THAT(effectsOf(R"({"silent_dismiss":true})"), ElementsAre("remove silently"));
    EXPECT_THAT(effectsOf(R"({"silent_dismiss":true,"dismiss":3,"redirection":"acme://silent"})"),
                ElementsAre("remove silently", "remove"));
    EXPECT_THAT(effectsOf(R"({"silent_dismiss":{},"dismiss":3})"), ElementsAre("remove silently", "close 3", "remove"));
    // A person is never left with a message that a refused address keeps open; and the next close is logged again.
    EXPECT_THAT(effectsOf(R"({"dismiss":{"redirection":"file:///etc/passwd"}})"), ElementsAre("remove"));
    EXPECT_THAT(effectsOf(R"({"dismiss":4})"), ElementsAre("close 4", "remove"));
    EXPECT_THAT(opened(), ElementsAre("https://a.test/p", "tel:+4912", "acme://cart", "acme://silent"));
}

TEST_F(TemplatePages, OpenNothingButWebPagesPeopleAndTheApplicationItself) {
    for (const auto* refused : {"file:///etc/passwd", "javascript:alert(1)", "JavaScript:alert(1)", " https://a.test",
                                "java\\nscript:alert(1)", "intent://x", "data:text/html,x", "https:/a.test", "https://",
                                "acmex://", "//a.test", "a.test", ""}) {
        EXPECT_THAT(effectsOf(std::string(R"({"internalUrl":")") + refused + R"(","externalUrl":")" + refused + "\"}"),
                    IsEmpty());
    }
    EXPECT_THAT(opened(), IsEmpty());
    EXPECT_THAT(effectsOf(R"({"internalUrl":"mailto:a@b.test","externalUrl":"HTTPS://a.test/ü b?q=%20"})"), IsEmpty());
    EXPECT_THAT(effectsOf(R"({"internalUrl":"http://a.test","externalUrl":"ACME:cart"})"),
                ElementsAre("browser http://a.test"));
    EXPECT_THAT(opened(), ElementsAre("mailto:a@b.test", "HTTPS://a.test/%C3%BC%20b?q=%20", "ACME:cart"));
    host.application->setBundle({"1.0.0", "com.acme.shop", "en", {"file", "javascript"}, {}});
    (void)effectsOf(R"json({"internalUrl":"javascript:alert(1)","externalUrl":"file:///etc/passwd"})json");
    EXPECT_THAT(opened(), SizeIs(3));
}

// --- Events, attributes, products, answers ---

TEST_F(TemplatePages, TagEventsWithParametersOfTheirTypes) {
    w.templateEvents.addObserverForEventInapps();  // a second time: still one event each
    host.scheduler->setTimeZone("America/New_York");
    say(R"({"event":{"events":[7,{"name":"form_sent","params":[
        {"type":"date","key":"day","value":"2026-07-01T23:30:00.250Z"},{"type":"date","key":"moment","value":0},
        {"type":"date","key":"none","value":"2026-02-30T00:00:00.000Z"},
        {"type":"array","key":"list","value":["a",1]},{"type":"double","key":"price","value":"9.5"},
        {"type":"boolean","key":"yes","value":" 01"},{"type":"int","key":"count","value":"\u000b+3e2"},
        {"type":"int","key":"zero","value":0},{"type":"colour","key":"tone","value":12},
        {"type":"string","key":"Bad Key","value":"x"},{"key":"no_value"},"junk"]}]}})");
    ASSERT_THAT(events(), SizeIs(1));
    EXPECT_EQ(events()[0].event_params->snapshot(), (Dictionary{{"day", "2026-07-01T23:30:00.250Z"},
                                                                {"moment", "1969-12-31T19:00:00.000Z"},
                                                                {"list", Array{"a"}},
                                                                {"price", 9.5},
                                                                {"yes", true},
                                                                {"count", 3},
                                                                {"tone", "12"}}));
    EXPECT_THAT(w.templateEvents.returnCurrentEvents(), IsEmpty());
}

TEST_F(TemplatePages, LeadsCarryTheCampaignWhateverThePageSaysAlsoBeyond32Bits) {
    const std::int64_t large = 9'007'199'254'740'993;  // no double holds it
    present({{"inapp_id", large}, {"variant_id", std::to_string(large + 1)}});
    say(R"({"lead":"a","survey":{"question":"How?","answer":"b"},"event":[{"name":"lead_collected",
        "params":[{"type":"string","key":"campaign_id","value":"x"},{"type":"string","key":"other","value":"y"}]}]})");
    for (const auto field : {&SessionRecord::lead_logs, &SessionRecord::survey_results}) {
        const auto all = record().*field;
        ASSERT_THAT(all, SizeIs(1));
        const auto& answer = *all[0].ifDictionary();
        EXPECT_EQ(answer["inapp_id"].integer(), large);
        EXPECT_EQ(answer["variant_id"].integer(), large + 1);
    }
    ASSERT_THAT(events(), SizeIs(1));
    EXPECT_EQ(events()[0].event_params->snapshot(), (Dictionary{{"campaign_id", large}, {"variant_id", large + 1}}));
    w.helper.setSdkDisabled(true);
    say(R"({"event":[{"name":"seen"}]})");
    EXPECT_THAT(events(), SizeIs(1));
}

TEST_F(TemplatePages, SetAttributesOfTheUser) {
    say(R"({"default_attributes":{"default_attributes":[
        {"type":"string","key":"na","value":"Ada"},{"type":"int","key":"ag","value":36},
        {"type":"double","key":"no","value":1.5},{"type":"boolean","key":"eo","value":1}],
        "attributes":[{"type":"double","key":"score","value":1.5},{"type":"array","key":"sizes","value":["s","m"]},
        {"type":"array","key":"none","value":"s"},{"type":"string","key":"tier","value":"gold"},{"type":"nothing",
        "key":"x","value":1},{"type":"date","key":"since","value":"2026-01-02T03:04:05.006Z"}]}})");
    say(R"({"default_attributes":[{"type":"string","key":"su","value":"L"}]})");
    EXPECT_EQ(w.userAttributes.getUserAttributes(), (Dictionary{{"na", "Ada"}, {"ag", 36}, {"eo", true}, {"su", "L"}}));
    EXPECT_EQ(
        w.userAttributes.getCustomAttributes(),
        (Dictionary{
            {"score", 1.5}, {"sizes", Array{"s", "m"}}, {"tier", "gold"}, {"since", "2026-01-02T03:04:05.006Z"}}));
}

TEST_F(TemplatePages, BuyAndTellTheApplication) {
    (void)effectsOf(R"({"item_purchase":{"purchased_items":[
          {"product_id":"p1","product_name":"Shoe","product_taxonomy":["a"],"product_image_url":"https://i","price":"9.5",
           "currency":"EUR","unique_sale_id":"s1"},{"product_id":"incomplete"},3]},
        "item_cart":[{"product_id":"p2","product_name":"Hat","product_taxonomy":"b","product_image_url":"https://i",
           "product_price":3,"product_currency":"TRY"}],
        "custom":{"mine":1}})");
    const auto bought = record().purchased_items;
    ASSERT_THAT(bought, SizeIs(1));
    EXPECT_EQ((*bought[0].ifDictionary())["sale_id"], Value("s1"));
    EXPECT_EQ((*bought[0].ifDictionary())["price"], Value(9.5));
    const auto inCart = record().abandoned_items;
    ASSERT_THAT(inCart, SizeIs(1));
    EXPECT_EQ((*inCart[0].ifDictionary())["currency"], Value("TRY"));
    std::vector<Value> types;
    for (const auto& info : callbacks->told) types.push_back(info["type"]);
    ASSERT_EQ(types, (std::vector<Value>{4, 2, 3}));
    EXPECT_EQ(callbacks->told[0]["data"], Value(Dictionary{{"mine", 1}}));
    EXPECT_THAT(*(*callbacks->told[2]["data"].ifDictionary())["cart_items"].ifArray(), SizeIs(1));
}

TEST_F(TemplatePages, KeepAnswersWithTheirMessage) {
    say(R"({"lead":{"email":"a@b.test"},"survey":{"question":"How?","answer":[1,"b"]}})");
    w.presentedInapp.clear();
    say(R"({"lead":{"email":"late@b.test"},"survey":{"question":"Why?","answer":5}})");
    EXPECT_EQ(record().lead_logs,
              (Array{Dictionary{{"inapp_id", 42}, {"variant_id", 7}, {"input", Dictionary{{"email", "a@b.test"}}}}}));
    EXPECT_EQ(record().survey_results,
              (Array{Dictionary{{"inapp_id", 42}, {"variant_id", 7}, {"question", "How?"}, {"answer", "[1,\"b\"]"}}}));
}

TEST_F(TemplatePages, CannotFillTheSession) {
    const std::string much(300'000, 'x');
    const auto sayOften = [&](const std::string& json) {
        present({});
        for (int i = 0; i < 5; ++i) say(json);
    };
    sayOften(R"({"event":[{"name":"inapp_seen","params":[{"type":"string","key":"k","value":")" + much + R"("}]}]})");
    EXPECT_THAT(events(), SizeIs(3)) << "not counted among the session's events";

    const std::string item = R"({"product_id":"p","product_name":"Hat","product_taxonomy":"b","price":1,
        "product_price":1,"product_image_url":"https://i","currency":"TRY","product_currency":"TRY"})";
    sayOften(R"({"item_purchase":{"unique_sale_id":")" + much + R"(","purchased_items":[)" + item + "," + item + "]}}");
    EXPECT_THAT(record().purchased_items, SizeIs(3)) << "each has the shared ID";

    present({});
    for (int i = 0; i < 5; ++i) {
        auto one = item;
        one.replace(one.find(R"("p")"), 3, "\"p" + std::to_string(i) + much + '"');
        say(R"({"item_cart":[)" + one + "]}");
    }
    EXPECT_THAT(record().abandoned_items, SizeIs(3));

    present({});
    for (int i = 0; i < 5; ++i) {
        const auto key = "a" + std::to_string(i);
        say(R"({"default_attributes":{"attributes":[{"type":"array","key":")" + key + R"(","value":[")" + much +
            R"("]}]}})");
    }
    EXPECT_THAT(w.userAttributes.getCustomAttributes(), SizeIs(3));
}

// --- The device ---

TEST_F(TemplatePages, ReachTheDevice) {
    (void)effectsOf(
        R"({"native":"settings","native_reviews":1,"copy":"CODE5","trigger_haptic_feedback":{"severity":2}})");
    EXPECT_EQ(host.pasteboard->text(), "CODE5");
    EXPECT_EQ(host.reviewPrompt->requests(), 1u);
    EXPECT_THAT(host.haptics->impacts(), ElementsAre(2));
    (void)effectsOf(R"({"native":"push_permission","trigger_haptic_feedback":9})");  // not decided: asks
    EXPECT_THAT(host.notifications->requestedAuthorizations(), ElementsAre(7));
    host.notifications->setSettings({platform::NotificationPermission::denied, false});
    (void)effectsOf(R"({"native":"push_permission"})");
    host.device->change([](platform::DeviceFacts& facts) { facts.osVersion = "15.3"; });
    (void)effectsOf(R"({"native":"push_permission"})");
    (void)effectsOf(R"({"native":"unknown"})");
    EXPECT_THAT(host.application->opened(),
                ElementsAre(Opened{Opened::Where::settings, ""}, Opened{Opened::Where::notificationSettings, ""},
                            Opened{Opened::Where::settings, ""}));
    EXPECT_THAT(host.notifications->requestedAuthorizations(), SizeIs(1));
    EXPECT_THAT(host.haptics->impacts(), SizeIs(1));
}

TEST_F(TemplatePages, EndEditingWhenTheKeyboardHides) {
    (void)effectsOf(R"({"input_begin":{"id":1}})");
    (void)effectsOf(R"({"input_begin":{"id":2}})");
    post(platform::notification_names::keyboardWillHide);
    post(platform::notification_names::keyboardWillHide);
    EXPECT_THAT(effects.taken(), ElementsAre("end editing"));
}

TEST_F(TemplatePages, LearnTheSessionWithoutTakingAnythingFromIt) {
    initialise();
    becomeActive();
    Orbinel::getCurrentUser().setCustomAttributeWithString("motto", "</script><script>alert(1)");
    Orbinel::tagEvent("seen").build();
    host.advance(30);
    const auto scripts = effectsOf(R"({"retrieve_device_attributes":true})");
    ASSERT_THAT(scripts, SizeIs(1));
    EXPECT_THAT(scripts[0], StartsWith("sdkCallbackMethod(1, {"));
    EXPECT_THAT(scripts[0], Not(HasSubstr("<")));
    const auto read = host.json->parse(scripts[0].substr(21, scripts[0].size() - 22));
    const auto& record = *std::get<Value>(read).ifDictionary();
    EXPECT_EQ(record["partner_name"], Value("acme"));
    EXPECT_EQ(record["session_duration"], Value(30));
    EXPECT_EQ(record["custom_attributes"], Value(Dictionary{{"motto", "</script><script>alert(1)"}}));
    EXPECT_FALSE(record.contains("push_logs"));  // empty ones are left out
    EXPECT_THAT(w.userAttributes.getCustomAttributes(), SizeIs(1));
    w.templateMessages.sendDataToTemplate(2);
    EXPECT_THAT(effects.taken(), IsEmpty());
}

TEST_F(TemplatePages, HearOfShakesOnceASecond) {
    auto& sensor = *host.accelerometer;
    const auto shakesAfter = [&](double seconds, double x, double y, double z) {
        host.advance(seconds);
        sensor.sample(x, y, z);
        host.settle();
        return effects.taken().size();
    };
    (void)effectsOf(R"({"init_shake_detector":{}})");
    EXPECT_EQ(sensor.interval(), std::chrono::milliseconds(100));
    EXPECT_EQ(shakesAfter(0, 0.1, 2.5, 0.3), 0u);
    EXPECT_EQ(shakesAfter(0.1, 0.1, -2.6, 0.3), 1u);
    EXPECT_EQ(shakesAfter(0.5, 3, 0, 0), 0u);
    EXPECT_EQ(shakesAfter(0.5, 0, 0, 3), 1u);
    (void)effectsOf(R"({"init_shake_detector":{}})");
    sensor.fail("The sensor is asleep.");
    host.settle();
    w.shakeDetector.destroyShakeDetector();
    EXPECT_FALSE(sensor.isStarted());
    (void)effectsOf(R"({"init_shake_detector":{}})");
    EXPECT_EQ(shakesAfter(0.5, 3, 0, 0), 0u);  // within a second of the last one, though started anew
    w.shakeDetector.stopObserving();
    w.shakeDetector.stopObserving();
    sensor.setAvailable(false);
    w.shakeDetector.startObservingWithCallback({});
    EXPECT_THAT(sinks.messages({"Shake", "App template Shake", "Accelerometer", "The sensor"}),
                ElementsAre("Shake detector initialized", "App template Shake Detected", "Shake detected",
                            "App template Shake Detected", "Shake detected", "Shake detector already initialized",
                            "The sensor is asleep.", "Shake detector destroyed", "Shake detector initialized",
                            "Shake detector destroyed", "Shake detector already destroyed", "Accelerometer not found"));
}

// --- Native buttons ---

TEST_F(TemplatePages, ButtonsCloseByTheirTagAndNativeOnesAct) {
    auto& attributes = w.userAttributes;
    const auto press = [&](const InappButton& button) {
        w.inappButtons.inappButtonClicked(button);
        host.settle();
        return effects.taken();
    };
    const auto tagged = [](std::int32_t tag) {
        InappButton button;
        button.tag = tag;
        return button;
    };
    const auto native = [](const char* hint, const char* label) {
        return InappButton{2, hint, label, "v", R"({"tier":"gold","visits":3})", R"({"aps":"hello"})"};
    };
    EXPECT_THAT(press(tagged(kBANNERCLICKED)), ElementsAre("close 6"));
    EXPECT_THAT(press(tagged(kCloseButtonDismissControlTag)), ElementsAre("close 6", "remove"));
    EXPECT_THAT(callbacks->told, IsEmpty());

    attributes.setCustomAttributeWithString("earlier", "x");
    EXPECT_THAT(press(native("0", "CODE5")), ElementsAre("close 2", "remove", "delegate hello"));
    EXPECT_EQ(host.pasteboard->text(), "CODE5");
    EXPECT_EQ(attributes.getCustomAttributes(), (Dictionary{{"tier", "gold"}, {"visits", "3"}}));
    EXPECT_THAT(callbacks->told, ElementsAre(Dictionary{{"type", 1}, {"data", Dictionary{{"aps", "hello"}}}}));

    for (const auto* hint : {"1", "2", "3", "4", "-1"}) (void)press(native(hint, "https://a.test"));
    (void)press(native("3", "file:///etc/passwd"));
    EXPECT_THAT(host.application->opened(),
                ElementsAre(Opened{Opened::Where::settings, ""}, Opened{Opened::Where::system, "https://a.test"}));
    EXPECT_THAT(host.notifications->requestedAuthorizations(), ElementsAre(7));
    auto broken = native("0", "ANOTHER");
    broken.accessibilityIdentifier = "no json";
    EXPECT_THAT(press(broken), ElementsAre("close 2", "remove"));
}

// --- Asking for pushes ---

TEST_F(TemplatePages, PushPermissionIsAskedForAsTheVersionCan) {
    const auto ask = [&](bool quiet, const char* version) {
        host.device->change([&](platform::DeviceFacts& facts) { facts.osVersion = version; });
        const auto before = host.notifications->registrations();
        w.pushPermission.registerWithQuietPermission(quiet);
        host.settle();
        return host.notifications->registrations() - before;
    };
    EXPECT_EQ(ask(true, "12.0"), 1u);
    EXPECT_EQ(ask(true, "11.4"), 1u);
    EXPECT_EQ(ask(false, "17.1"), 1u);
    EXPECT_EQ(ask(false, "9.3"), 1u);
    EXPECT_EQ(ask(true, "7.1"), 1u);  // such a platform is not asked at all
    EXPECT_THAT(host.notifications->requestedAuthorizations(), ElementsAre(96, 7, 7, 7));

    sinks.clear();
    host.notifications->setAuthorizationFailure("No such service.");
    EXPECT_EQ(ask(true, "16.0") + ask(false, "16.0"), 0u);
    const auto feeds = sinks.feeds("registerWithQuietPermission");
    ASSERT_THAT(feeds, SizeIs(3));
    EXPECT_EQ(feeds[0].data, (Dictionary{{"value", true}}));
    EXPECT_TRUE(feeds[0].shouldFeed && !feeds[0].isError && feeds[2].isError && !feeds[2].shouldFeed);
    EXPECT_EQ(feeds[2].data, (Dictionary{{"error", "No such service."}}));
    w.helper.setSdkDisabled(true);
    (void)ask(false, "16.0");
    EXPECT_THAT(sinks.feeds("registerWithQuietPermission"), SizeIs(3));
}

}  // namespace

}  // namespace orbinel::testing
