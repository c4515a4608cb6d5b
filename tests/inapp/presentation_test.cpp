#include "inapp/presentation.hpp"

#include "inapp/kept_effects.hpp"
#include "inapp/view_tags.hpp"

namespace orbinel::testing {
namespace {

using platform::NavigationPolicy;

class Presenting : public LibraryTest {
protected:
    Presenting() {
        presentation.page.bind(effects);
        presentation.buttonClicks.bind(effects);
        presentation.urlOpening.bind(effects);
        presentation.shakeDetector.bind(effects);
    }

    static Dictionary campaign(int id, Dictionary layout, Value delay = 0) {
        return {{"inapp_id", id},
                {"variant_id", 7},
                {"delay", std::move(delay)},
                {"content", Dictionary{{"type", kCUSTOMSREEN},
                                       {"template_url", "https://pages.test/t"},
                                       {"template_layout", std::move(layout)}}}};
    }
    void build(Dictionary record, InappLayout layout = {}) {
        layout.delay = static_cast<std::int32_t>(record["delay"].integer().value_or(0));
        handOver(std::move(record), layout);
        host.settle();
    }
    void handOver(Dictionary record, const InappLayout& layout = {}) {
        const auto handedOver = std::make_shared<const Dictionary>(std::move(record));
        presented.present(handedOver);
        presentation.createInappAfterAppropriateDelaysWithType(handedOver, layout);
    }
    void buildAndShow(Dictionary layout) {
        build(campaign(1, std::move(layout)));
        page()->finish();
        host.advance(1);
    }
    std::shared_ptr<headless::HeadlessPage> page() { return host.views->page(); }
    double alpha(std::int32_t tag = kINAPPVIEWTAG) {
        const auto view = host.views->view(tag);
        return view ? view->alpha : -1;
    }
    platform::Rectangle frame() {
        return host.views->view(kINAPPVIEWTAG).value_or(headless::HeadlessViewFacts{}).frame;
    }

    PresentedInapp presented;
    KeptEffects effects;
    InappPresentation presentation{{world().reports, world().helper, world().identity, world().testDevices, presented,
                                    effects, world().ownLifetime, *host.scheduler, *host.json, *host.console,
                                    *host.notificationCentre, *host.application, *host.views}};
};

TEST_F(Presenting, APageLoadsAtOnceAndIsSeenWhenItsDelayIsOver) {
    const auto target = std::make_shared<KeptCallbacks>();
    presentation.setInappSeenCallback({std::weak_ptr(target), &KeptCallbacks::take});
    build(campaign(1, {}, 5));
    EXPECT_THAT(page()->url(), StartsWith("https://pages.test/t/" + *world().helper.getUdid()));
    EXPECT_TRUE(presentation.isInAppOnTheScreen());
    presentation.showInapp();  // nothing is there to be seen yet
    EXPECT_EQ(sinks.count("showInapp has been called."), 0u);
    EXPECT_EQ(page()->respond(200), NavigationPolicy::allow);
    page()->progress(0.424);
    page()->progress(0.428);
    page()->finish();
    host.advance(4.9);
    EXPECT_EQ(alpha(), 0);
    EXPECT_FALSE(presented.shouldAddInappLog());

    build(campaign(2, {}));  // is dropped, and the first one keeps its place
    EXPECT_EQ(sinks.count("Waiting other orbinel webview"), 1u);
    host.advance(0.2);
    EXPECT_GT(alpha(), 0);
    EXPECT_LT(alpha(), 1);
    host.advance(1);
    EXPECT_EQ(alpha(), 1);
    EXPECT_TRUE(presented.shouldAddInappLog());
    const Dictionary identity{{"inapp_id", "1"}, {"variant_id", "7"}};
    EXPECT_THAT(target->told, ElementsAre(Dictionary{{"type", 5}, {"data", identity}}));
    EXPECT_THAT(sinks.messages({"Orbinel", "Template", "App template", "Webview", "showInapp", "Inapp"}),
                ElementsAre("OrbinelWKWebbiew initialized", "Template URL is about to load.",
                            "OrbinelWKWebbiew added to superview", "App template load request",
                            "OrbinelWKWebbiew estimated_progress", "Webview delay received.",
                            "showInapp has been called.", "Inapp has been shown.", "Webview has been drawn"));

    ASSERT_TRUE(host.views->tap(kBUTTONVIEWTAG));
    EXPECT_THAT(effects.taken(), ElementsAre("button 13"));
    int completed = 0;
    presentation.removeInapp([&] { ++completed; });
    presentation.removeInapp([&] { ++completed; });
    EXPECT_EQ(completed, 0);
    host.advance(1);
    EXPECT_EQ(completed, 2);
    presentation.removeInapp([&] { ++completed; });
    EXPECT_EQ(completed, 3);
    EXPECT_EQ(host.views->tree().size(), 1u);
    EXPECT_FALSE(page()->isAlive());
    EXPECT_FALSE(presentation.isInAppOnTheScreen());
    EXPECT_EQ(presented.activeInapp(), nullptr);
    EXPECT_EQ(effects.detectorsDestroyed, 3);
}

TEST_F(Presenting, WhatTheMomentForbidsIsNotShown) {
    const auto due = [&](const std::function<void()>& before) {
        build(campaign(1, {}));
        page()->finish();
        before();
        host.advance(1);
    };
    due([&] { host.application->setPortrait(false); });
    EXPECT_EQ(alpha(), -1);
    EXPECT_THAT(effects.taken(), IsEmpty());
    host.application->setPortrait(true);

    due([&] { host.views->setKeyboardOpen(true); });
    EXPECT_EQ(alpha(), -1);
    EXPECT_THAT(effects.taken(), ElementsAre("close 7"));
    host.views->setKeyboardOpen(false);

    due([&] { presentation.openBrowserUrl("https://shop.test/"); });
    EXPECT_EQ(alpha(), 0);
    EXPECT_EQ(sinks.count("InApp already in view."), 1u);
    ASSERT_TRUE(host.views->tap(kPUSHBROWSERCLOSEBUTTONVIEWTAG));
    host.advance(1);
    EXPECT_EQ(alpha(), 1);
    EXPECT_EQ(alpha(kPUSHBROWSERVIEWTAG), -1);
    EXPECT_TRUE(presented.shouldAddInappLog());
    presentation.removeInappSilently();
    EXPECT_FALSE(presented.shouldAddInappLog()) << "while it fades";
    host.advance(1);

    due([&] { host.application->setState(platform::ApplicationState::background); });
    EXPECT_EQ(alpha(), 0);
    EXPECT_EQ(sinks.count("Application state is background."), 1u);
    EXPECT_FALSE(presentation.isInAppOnTheScreen());  // it makes way for the next one
    EXPECT_EQ(sinks.count("Inapp has been shown."), 1u);
}

TEST_F(Presenting, AFailedPageStaysInvisibleAndMakesWayForTheNextMessage) {
    const auto failure = [](std::int32_t code, bool provisional) {
        return platform::LoadFailure{std::string(platform::LoadFailure::urlLoading), code, "broken", provisional};
    };
    const std::vector<std::function<void()>> failures{
        [&] { page()->fail(failure(-1200, true)); },
        [&] { page()->fail(failure(-1005, false)); },
        [&] { EXPECT_EQ(page()->respond(404), NavigationPolicy::cancel); },
        [&] { page()->terminate(); },
    };
    for (const auto& fail : failures) {
        build(campaign(1, {}));
        EXPECT_TRUE(presentation.isInAppOnTheScreen());
        effects.observing = true;
        fail();
        EXPECT_FALSE(effects.observing);
        page()->finish();  // whatever the engine says afterwards
        for (const auto* asked : {"orbinelurl://%7B%7D", "https://shop.test/"}) {
            EXPECT_EQ(page()->navigate(asked, true), NavigationPolicy::cancel);
        }
        EXPECT_THAT(effects.taken(), IsEmpty()) << "nobody sees the page";
        host.advance(1);
        EXPECT_EQ(alpha(), 0);
        EXPECT_FALSE(presentation.isInAppOnTheScreen());
    }
    EXPECT_THAT(sinks.messages({"Webview warning", "Template request"}),
                ElementsAre("Webview warning. SSL. -1200", "Template request failed",
                            "Webview warning. didFailNavigation.", "Template request failed", "Template request failed",
                            "Webview warning. contentProcessDidTerminate."));
    EXPECT_EQ(sinks.count("RemoveFromSuperview is called."), 3u);
    buildAndShow({});
    EXPECT_EQ(alpha(), 1);

    presentation.removeInapp({});
    host.advance(1);
    host.views->setWebViewRefusal("no engine");
    build(campaign(1, {}));
    EXPECT_EQ(sinks.records().back().message, "Template request failed");
    EXPECT_EQ((*sinks.records().back().customAttributes)["reason"], Value("no engine"));
    EXPECT_EQ(presented.activeInapp(), nullptr);
}

TEST_F(Presenting, APageThatHangsAndAMessageThatWasOvertakenMakeWay) {
    build(campaign(1, {}));
    host.advance(59);
    EXPECT_TRUE(presentation.isInAppOnTheScreen());
    host.advance(2);
    EXPECT_FALSE(presentation.isInAppOnTheScreen());
    EXPECT_EQ(sinks.count("Template request failed"), 1u);

    handOver(campaign(2, {}));
    build(campaign(3, {}));  // in the same turn
    EXPECT_EQ(sinks.count("Waiting other orbinel webview"), 1u);
    page()->respond(200);
    page()->finish();
    host.advance(1);
    EXPECT_EQ(alpha(), 1);
    EXPECT_EQ((*presented.activeInapp())["inapp_id"], Value(3));

    presentation.removeInapp({});
    host.advance(1);
    const auto first = std::make_shared<const Dictionary>(campaign(4, {}));
    presented.present(first);
    presented.present(std::make_shared<const Dictionary>(campaign(5, {})));  // by another thread meanwhile
    presentation.createInappAfterAppropriateDelaysWithType(first, {});
    host.settle();
    EXPECT_FALSE(presentation.isInAppOnTheScreen()) << "no message has the layout of another";
}

TEST_F(Presenting, AddressesThatCannotBeUsedAreToldApart) {
    const auto outcome = [&](const char* url, std::int32_t type = kCUSTOMSREEN) {
        sinks.clear();
        build({{"inapp_id", 1}, {"content", Dictionary{{"type", type}, {"template_url", url}}}});
        EXPECT_EQ(host.views->tree().size(), 1u) << url;
        return sinks.messages({"Waiting", "Template URL is invalid", "Webview can't", "RemoveFrom", "App template"});
    };
    EXPECT_THAT(outcome("https://a b/"), ElementsAre("Waiting other orbinel webview"));
    EXPECT_THAT(outcome("file:///etc"), ElementsAre("Template URL is invalid"));
    EXPECT_THAT(outcome("http:///no-host"), ElementsAre("Template URL is invalid"));
    EXPECT_THAT(outcome(""), ElementsAre("Webview can't load.", "App template load request"));
    EXPECT_THAT(outcome("https://pages.test", 2),
                ElementsAre("RemoveFromSuperview is called.", "App template load request"));
}

TEST_F(Presenting, PositionAndHeightPlaceTheMessageInsideTheSafeArea) {
    // 390 x 844 points, of which 47 above and 34 below are covered.
    const auto placed = [&](Dictionary layout) {
        buildAndShow(std::move(layout));
        const auto place = frame();
        const bool dims = alpha(kOVERLAYTAG) == 1;
        presentation.removeInapp({});
        host.advance(1);
        return std::pair(place, dims);
    };
    using platform::Rectangle;
    EXPECT_EQ(placed({}), std::pair(Rectangle{0, 47, 390, 763}, false));
    EXPECT_EQ(placed({{"height", -2}, {"ignoreSafeZone", true}}), std::pair(Rectangle{0, 0, 390, 844}, false));
    EXPECT_EQ(placed({{"height", 0.5}, {"position", 2}}), std::pair(Rectangle{0, 47, 390, 422}, false));
    EXPECT_EQ(placed({{"height", 0.5}, {"position", 5}}), std::pair(Rectangle{0, 217.5, 390, 422}, true));
    EXPECT_EQ(placed({{"height", 0.5}, {"position", 5}, {"ignoreSafeZone", 1}}),
              std::pair(Rectangle{0, 211, 390, 422}, true));
    EXPECT_EQ(placed({{"height", 0.5}, {"position", 42}}), std::pair(Rectangle{0, 388, 390, 422}, false));

    buildAndShow({{"height", 0.5}, {"position", 8}});
    presentation.adjustTemplate({{"position", 5}, {"height", 0.25}});
    EXPECT_EQ(frame(), (Rectangle{0, 323, 390, 211}));
    EXPECT_EQ(alpha(kOVERLAYTAG), 1);
    EXPECT_TRUE(host.views->tap(kBUTTONVIEWTAG));
}

TEST_F(Presenting, ADockedFormMovesWithTheKeyboardUntilItIsRemoved) {
    const auto keyboard = [&](std::string_view name, Dictionary info = {}) {
        host.notificationCentre->post(name, info);
        host.advance(1);
        return frame().y;
    };
    const auto willShow = platform::notification_names::keyboardWillShow;
    for (const bool docked : {true, false}) {
        InappLayout layout;
        layout.type = kCUSTOMSREEN;
        layout.layoutStyle = docked ? 4 : 3;
        layout.position = 7;
        layout.notFullHeight = true;
        build(campaign(1, {{"height", 0.5}, {"position", 7}}), layout);
        EXPECT_EQ(keyboard(willShow, {{"height", 300}}), docked ? 88 : 388);
        EXPECT_EQ(keyboard(platform::notification_names::keyboardWillHide), 388);
        presentation.removeInapp({});
        EXPECT_EQ(keyboard(willShow, {{"height", 300}}), 0);
    }
}

TEST_F(Presenting, OnlyThePageItselfSpeaksAndLinksOpenOutside) {
    buildAndShow({});
    EXPECT_EQ(page()->navigate("orbinelurl://%7B%7D", true), NavigationPolicy::cancel);
    EXPECT_EQ(page()->navigate("https://pages.test/next"), NavigationPolicy::allow);
    EXPECT_EQ(page()->navigate("about:srcdoc"), NavigationPolicy::allow);  // its text is the page's own
    EXPECT_EQ(page()->navigate("https://shop.test/", true), NavigationPolicy::cancel);
    EXPECT_THAT(effects.taken(), ElementsAre("orbinelurl://%7B%7D", "open https://shop.test/"));

    EXPECT_EQ(page()->respond({"https://PAGES.test/frame", 200, false}), NavigationPolicy::allow);
    for (const auto* other : {"https://pages.test.evil/", "http://pages.test/", "data:text/html,x"}) {
        EXPECT_EQ(page()->respond({other, 200, false}), NavigationPolicy::cancel) << other;
    }
    EXPECT_EQ(sinks.count("A frame of another origin is refused."), 3u);
    for (const auto* other : {"data:text/html,x", "blob:https://pages.test/1", "file:///etc/passwd"}) {
        EXPECT_EQ(page()->navigate(other), NavigationPolicy::cancel) << other;
    }
    EXPECT_EQ(sinks.count("A frame of another origin is refused."), 6u);
    EXPECT_EQ(page()->navigate(platform::NavigationAction{"orbinelurl://%7B%7D", false, true}),
              NavigationPolicy::cancel);
    EXPECT_EQ(sinks.count("A frame of another origin is refused."), 7u);
    EXPECT_THAT(effects.taken(), IsEmpty()) << "what a redirect says";

    presented.present(std::make_shared<const Dictionary>(Dictionary{{"content", Dictionary{{"type", 2}}}}));
    (void)page()->navigate("https://shop.test/", true);
    EXPECT_THAT(effects.taken(), ElementsAre("button 6", "open https://shop.test/"));
}

TEST_F(Presenting, HiddenTemplatesAndProductPagesRemoveWhatTheyAreMeantTo) {
    auto ofProduct = campaign(1, {});
    ofProduct.set("trigger", "product_detail_page_view");
    buildAndShow({});
    presentation.removeInappOnProductPage();
    host.advance(1);
    EXPECT_EQ(alpha(), 1);
    presentation.disableInAppMessages();
    host.advance(1);
    EXPECT_THAT(effects.taken(), ElementsAre("disableInAppMessages", "blocked 1"));
    EXPECT_EQ(sinks.count("In-app messages disabled and removed."), 1u);
    EXPECT_EQ(alpha(), -1);
    EXPECT_FALSE(host.views->tree().front().visible);

    presentation.openBrowserUrl("https://shop.test/");
    EXPECT_TRUE(host.views->tree().front().visible);
    ASSERT_TRUE(host.views->tap(kPUSHBROWSERCLOSEBUTTONVIEWTAG));
    host.settle();
    EXPECT_FALSE(host.views->tree().front().visible);
    presentation.enableInAppMessages();
    EXPECT_TRUE(host.views->tree().front().visible);

    build(ofProduct);
    presentation.removeInappOnProductPage();
    host.advance(1);
    EXPECT_EQ(alpha(), -1);
    build(campaign(1, {}, 5));
    page()->finish();
    handOver(campaign(2, {}));
    presentation.cancelScheduledInapps();  // both what waits for its delay and what is not built yet
    host.advance(10);
    EXPECT_EQ(host.views->tree().size(), 1u);
    EXPECT_EQ(sinks.count("Inapp has been shown."), 1u);
}

TEST_F(Presenting, PagesGetTheFontsAndTellTheConsoleOnlyOnTestDevices) {
    presentation.pageSettings.setCustomRegularFont(R"(Acme "Sans")");
    presentation.pageSettings.setDebuggingEnabled(true);
    buildAndShow({});
    EXPECT_TRUE(page()->settings().inspectable);
    EXPECT_THAT(page()->settings().startScript, HasSubstr(R"({"--orbinel-regular-font":"\"Acme \\\"Sans\\\"\""})"));
    EXPECT_THAT(page()->settings().startScript, HasSubstr("console.log"));
    page()->message("secret");
    world().testDevices.markDeviceAsDebug();
    page()->message("seen\nhere");
    const auto lines = host.console->lines();
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "[ORBINEL][message]: secret"), 0);
    ASSERT_FALSE(lines.empty());
    EXPECT_THAT(lines.back(), StartsWith("[ORBINEL][message]: seen"));
}

}  // namespace
}  // namespace orbinel::testing
