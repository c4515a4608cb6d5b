#include "push/interception.hpp"

#include <stdexcept>

#include "support/library_test.hpp"

namespace orbinel::testing {
namespace {

namespace operations = platform::delegate_operations;
using platform::Delegate;
using platform::DelegateArguments;
using platform::DelegateClass;
using platform::DelegateResult;

const std::vector<std::string_view> allOfApplication(operations::onApplication.begin(),
                                                     operations::onApplication.end());

/// An object of an application with handlers of its own, which are listed as they run.
struct Handlers {
    explicit Handlers(std::vector<std::string_view> own = {}) : implemented(std::move(own)) {
        for (const auto operation : implemented) {
            type->addOperation(operation, [this, operation](Delegate&, const DelegateArguments&) -> DelegateResult {
                called.emplace_back(operation);
                if (inside) inside();
                return true;
            });
            implementations.push_back(type->implementation(operation));
        }
    }

    /// Whether the class is what the application made of it.
    [[nodiscard]] bool isUntouched() const {
        for (std::size_t i = 0; i < implemented.size(); ++i) {
            if (type->implementation(implemented[i]) != implementations[i]) return false;
        }
        std::vector<std::string_view> others(allOfApplication);
        others.insert(others.end(), {operations::openUrlContexts, "OrbinelHandleUrl:handleOpenURL:"});
        return std::all_of(others.begin(), others.end(), [&](std::string_view operation) {
            const auto own = std::find(implemented.begin(), implemented.end(), operation) != implemented.end();
            return own == type->implements(operation);
        });
    }

    DelegateResult perform(std::string_view operation, const DelegateArguments& arguments = {}) const {
        return delegate->perform(operation, arguments);
    }

    const std::vector<std::string_view> implemented;
    std::function<void()> inside;
    std::vector<std::string> called;
    std::shared_ptr<DelegateClass> type = std::make_shared<DelegateClass>("Handlers");
    std::vector<std::shared_ptr<const platform::DelegateImplementation>> implementations;
    std::shared_ptr<Delegate> delegate = std::make_shared<Delegate>(type);
};

class InterceptionTest : public LibraryTest {
protected:
    static DelegateArguments aPush(int campaign, int* completions = nullptr) {
        DelegateArguments arguments;
        arguments.userInfo = {
            {"aps", Dictionary()}, {"source", "Orbinel"}, {"camp_id", campaign}, {"camp_type", 1}, {"variant_id", "a"}};
        if (completions != nullptr) arguments.completion = platform::CompletionHandler([=] { ++*completions; });
        return arguments;
    }
    static DelegateArguments aUrl(std::string url) {
        DelegateArguments arguments;
        arguments.urlContexts = {url, "acme://test_device/second"};
        arguments.url = std::move(url);
        return arguments;
    }
    static std::optional<std::string> lastLink() { return world().testDevices.testDeviceToken(); }

    std::vector<DiagnosticRecord> pushRecords() const {
        auto records = sinks.records();
        std::erase_if(records, [](const auto& one) { return one.type != LogType::push; });
        return records;
    }
    std::vector<std::string> pushMessages() const {
        std::vector<std::string> messages;
        for (const auto& one : pushRecords()) messages.push_back(one.message);
        return messages;
    }
    std::size_t pushesHandled() const { return sinks.feeds("handlePushLog").size(); }

    Handlers application;
};

TEST_F(InterceptionTest, AnApplicationWithoutHandlersNeedsNone) {
    host.application->setDelegate(application.delegate);
    initialise();
    DelegateArguments arguments;
    arguments.deviceToken = {0x00, 0xab};
    EXPECT_EQ(application.perform(operations::didRegisterForRemoteNotifications, arguments), std::nullopt);
    EXPECT_EQ(sinks.feeds("registerDeviceToken").at(0).data["deviceToken"], "00ab");

    int completions = 0;
    application.perform(operations::didReceiveRemoteNotificationFetching, aPush(1, &completions));
    application.perform(operations::didReceiveNotificationResponse, aPush(2, &completions));
    EXPECT_FALSE(world().push.foregroundPush());
    application.perform(operations::willPresentNotification, aPush(3, &completions));
    EXPECT_TRUE(world().push.foregroundPush());
    EXPECT_EQ(completions, 3);
    application.perform(operations::didReceiveRemoteNotification, aPush(4));
    EXPECT_THAT(record().push_logs, SizeIs(4));

    EXPECT_EQ(application.perform(operations::openUrlWithOptions, aUrl("acme://test_device/a")), false);
    EXPECT_EQ(lastLink(), "a");
    EXPECT_EQ(application.perform(operations::handleOpenUrl, aUrl("acme://test_device/b")), false);
    EXPECT_EQ(lastLink(), "b");
    EXPECT_EQ(application.perform(operations::openUrlWithSourceApplication, aUrl("acme://test_device/c")), false);
    EXPECT_EQ(lastLink(), "c");
    EXPECT_EQ(application.perform(operations::handleOpenUrl, aUrl("")), false);
    arguments.activity.webpageUrl = "https://shop.test/?isOrb=1";
    EXPECT_EQ(application.perform(operations::continueUserActivity, arguments), false);
    host.settle();
    EXPECT_EQ(record().universal_link, "https://shop.test/?isOrb=1");

    EXPECT_THAT(pushMessages(),
                ElementsAre("didRegisterForRemoteNotificationsWithDeviceToken",
                            "didReceiveRemoteNotification:fetchCompletionHandler",
                            "didReceiveNotificationResponse:withCompletionHandler",
                            "willPresentNotification:withCompletionHandler", "didReceiveRemoteNotification",
                            "openURL:options", "handleOpenURL", "openURL:sourceApplication:annotation", "handleOpenURL",
                            "continueUserActivity:restorationHandler"));
    EXPECT_EQ(pushRecords()[6].customAttributes, (Dictionary{{"url", "acme://test_device/b"}}));
    EXPECT_EQ(pushRecords()[8].customAttributes, (Dictionary{{"url", ""}}));
}

TEST_F(InterceptionTest, TheApplicationsOwnHandlersRunFirstAndKeepTheirSay) {
    Handlers own(allOfApplication);
    host.application->setDelegate(own.delegate);
    initialise();
    std::vector<std::string> order;
    own.inside = [&] { order.push_back(own.called.back() + " after " + std::to_string(pushMessages().size())); };

    int completions = 0;
    EXPECT_EQ(own.perform(operations::didReceiveNotificationResponse, aPush(1, &completions)), true);
    EXPECT_EQ(own.perform(operations::didReceiveRemoteNotificationFetching, aPush(2, &completions)), true);
    EXPECT_EQ(own.perform(operations::openUrlWithOptions, aUrl("acme://test_device/a")), true);
    EXPECT_THAT(order, ElementsAre(std::string(operations::didReceiveNotificationResponse) + " after 1",
                                   std::string(operations::didReceiveRemoteNotificationFetching) + " after 1",
                                   std::string(operations::openUrlWithOptions) + " after 2"));
    EXPECT_EQ(completions, 0);  // the application's to call
    EXPECT_EQ(lastLink(), "a");
    EXPECT_THAT(record().push_logs, SizeIs(2));
    // Still to be had under the replacement's name.
    EXPECT_EQ(own.perform("OrbinelOpenUrl:openURL:options:"), true);
    EXPECT_THAT(pushMessages(), SizeIs(3));
}

// What a native button carries comes to the application as a push does.
TEST_F(InterceptionTest, APayloadOfAMessageReachesTheDelegateAndTheLibrary) {
    initialise();
    world().payloadDelivery.setDictionaryToDelegate(aPush(1).userInfo);
    EXPECT_EQ(pushesHandled(), 0u);
    Handlers own({operations::didReceiveRemoteNotificationFetching, operations::didReceiveRemoteNotification});
    host.application->setDelegate(own.delegate);
    world().inappButtons.remoteNotifications->setDictionaryToDelegate(aPush(1).userInfo);
    EXPECT_THAT(own.called, ElementsAre(operations::didReceiveRemoteNotificationFetching));
    EXPECT_EQ(pushesHandled(), 1u);
}

TEST_F(InterceptionTest, APayloadOfAMessageReachesTheOlderHandler) {
    Handlers older({operations::didReceiveRemoteNotification});
    host.application->setDelegate(older.delegate);
    initialise();
    world().payloadDelivery.setDictionaryToDelegate(aPush(1).userInfo);
    EXPECT_THAT(older.called, ElementsAre(operations::didReceiveRemoteNotification));
    EXPECT_EQ(pushesHandled(), 1u);

    Handlers another;  // of a class that is not changed
    host.application->setDelegate(another.delegate);
    world().payloadDelivery.setDictionaryToDelegate(aPush(1).userInfo);
    EXPECT_EQ(pushesHandled(), 1u);
}

TEST_F(InterceptionTest, APayloadOfAMessageReachesTheLibraryWhereTheApplicationHasNoHandler) {
    host.application->setDelegate(application.delegate);
    initialise();
    world().payloadDelivery.setDictionaryToDelegate(aPush(1).userInfo);
    EXPECT_EQ(pushesHandled(), 1u);
}

TEST_F(InterceptionTest, WithoutAutomaticIntegrationOperationsAreOnlyReported) {
    Orbinel::disableAutoIntegration();
    host.application->setDelegate(application.delegate);
    initialise();
    DelegateArguments arguments = aUrl("acme://test_device/a");
    arguments.userInfo = aPush(1).userInfo;
    arguments.deviceToken = {1};
    arguments.activity.webpageUrl = "https://shop.test/?isOrb=1";
    for (const auto operation : allOfApplication) application.perform(operation, arguments);
    host.settle();
    EXPECT_THAT(pushMessages(), SizeIs(allOfApplication.size()));
    EXPECT_EQ(lastLink(), std::nullopt);
    EXPECT_EQ(record().universal_link, std::nullopt);
    EXPECT_EQ(pushesHandled() + sinks.feeds("registerDeviceToken").size(), 0u);
}

TEST_F(InterceptionTest, ARefusedTokenIsToldOnTheConsole) {
    host.application->setDelegate(application.delegate);
    DelegateArguments arguments;
    arguments.failure = {3010, "not supported\nhere"};
    application.perform(operations::didFailToRegisterForRemoteNotifications, arguments);
    arguments.failure = {3000, "no valid 'aps-environment' entitlement string found"};
    application.perform(operations::didFailToRegisterForRemoteNotifications, arguments);
    EXPECT_THAT(host.console->lines(),
                ElementsAre("Orbinel failed to register the device to push notifications. Error: not supported here",
                            "'Push Notification' capability is not enabled on capability. Please make sure that it's "
                            "enabled by clicking on your Project Target -> Capability "));
    EXPECT_EQ(pushRecords().at(0).level, LogLevel::error);
    EXPECT_EQ(pushRecords()[0].customAttributes, (Dictionary{{"error_code", "3010"}}));
}

TEST_F(InterceptionTest, WhatAHandlerThrowsIsReportedByTheReplacementsText) {
    Handlers own({operations::handleOpenUrl, operations::didReceiveNotificationResponse});
    own.inside = [] { throw std::runtime_error("mistaken"); };
    host.application->setDelegate(own.delegate);
    EXPECT_EQ(own.perform(operations::handleOpenUrl, aUrl("acme://test_device/a")), false);
    EXPECT_EQ(own.perform(operations::didReceiveNotificationResponse, aPush(1)), std::nullopt);
    const auto reports = sinks.feeds("sendError");
    ASSERT_THAT(reports, SizeIs(2));
    EXPECT_EQ(reports[0].data["error"], "mistaken -- OrbinelPush - OrbinelHandleUrl");
    EXPECT_EQ(reports[1].data["error"], "mistaken -- OrbinelPush - orbinelUserNotificationCenter");
    EXPECT_EQ(lastLink(), std::nullopt);
    shutdown();
    EXPECT_THROW(own.perform(operations::handleOpenUrl), std::runtime_error);
}

TEST_F(InterceptionTest, ChangesTheFirstDelegatesClassOnceAndLeavesOutWhatIsSwitchedOff) {
    auto bundle = host.application->bundle();
    bundle.information = {
        {"Orbinel", Dictionary{{"Disabled Swizzlers", Array{"handleOpenURL", 7, Null{}, "unknown"}}}}};
    host.application->setBundle(bundle);
    Handlers own(allOfApplication);
    Handlers later;
    host.application->setDelegate(own.delegate);
    host.application->setDelegate(own.delegate);
    host.application->setDelegate(later.delegate);
    host.notifications->setDelegate(own.delegate);
    initialise();
    initialise();
    for (const auto operation : allOfApplication) own.perform(operation);
    EXPECT_THAT(own.called, SizeIs(allOfApplication.size()));
    EXPECT_THAT(pushMessages(), SizeIs(allOfApplication.size() - 1));
    EXPECT_EQ(sinks.count("handleOpenURL"), 0u);
    EXPECT_TRUE(later.isUntouched());
}

TEST_F(InterceptionTest, ANotificationDelegateOfItsOwnIsChangedAtInitialisationUnlessAWrapperDoesIt) {
    Handlers centre({operations::didReceiveNotificationResponse});
    host.application->setDelegate(application.delegate);
    host.notifications->setDelegate(centre.delegate);
    Orbinel::setHybridSDKVersion("F-1.0.0");
    initialise();
    EXPECT_TRUE(centre.isUntouched());

    Orbinel::setHybridSDKVersion(nullptr);
    initialise();
    initialise();
    centre.perform(operations::didReceiveNotificationResponse, aPush(1));
    centre.perform(operations::willPresentNotification, aPush(2));
    centre.perform(operations::handleOpenUrl);
    EXPECT_THAT(pushMessages(), SizeIs(2));
    EXPECT_EQ(pushesHandled(), 2u);
    EXPECT_THAT(centre.called, SizeIs(1));
}

TEST_F(InterceptionTest, ScenesForwardTheFirstOfTheirUrls) {
    initialise();
    Handlers scene({operations::openUrlContexts});
    host.application->connectScene(scene.delegate);
    host.application->connectScene(std::make_shared<Delegate>(scene.type));
    scene.perform(operations::openUrlContexts, aUrl("acme://test_device/first"));
    EXPECT_EQ(lastLink(), "first");
    EXPECT_THAT(scene.called, SizeIs(1));
    scene.perform(operations::openUrlContexts);
    ASSERT_THAT(pushMessages(), ElementsAre("openURLContexts", "openURLContexts"));
    EXPECT_EQ(pushRecords()[0].customAttributes, (Dictionary{{"url", "acme://test_device/first"}}));
    EXPECT_EQ(pushRecords()[1].customAttributes, (Dictionary{{"url", ""}}));
    EXPECT_FALSE(scene.type->implements(operations::handleOpenUrl));
}

// An application that ends the library gets its delegates back as they were, whatever is under way.
TEST_F(InterceptionTest, TheEndTakesEverythingBackAndAnotherStartInstallsItAnew) {
    Handlers own({operations::handleOpenUrl, operations::didReceiveRemoteNotificationFetching});
    Handlers scene;
    Handlers centre({operations::willPresentNotification});
    host.application->setDelegate(own.delegate);
    host.application->connectScene(scene.delegate);
    host.notifications->setDelegate(centre.delegate);
    initialise();
    const auto replaced = own.type->implementation(operations::handleOpenUrl);
    const auto added = own.type->implementation(operations::willPresentNotification);
    own.inside = [] { shutdown(); };
    EXPECT_EQ(own.perform(operations::handleOpenUrl, aUrl("acme://test_device/a")), true);
    EXPECT_TRUE(own.isUntouched() && scene.isUntouched() && centre.isUntouched());
    EXPECT_THAT(pushMessages(), IsEmpty());

    // Calls that were on their way.
    own.inside = nullptr;
    int completions = 0;
    EXPECT_EQ((*replaced)(*own.delegate, {}), true);
    EXPECT_EQ((*added)(*own.delegate, aPush(1, &completions)), std::nullopt);
    EXPECT_THAT(own.called, SizeIs(2));
    EXPECT_EQ(completions, 1);
    EXPECT_THAT(pushMessages(), IsEmpty());

    launch();
    own.perform(operations::didReceiveRemoteNotificationFetching);
    scene.perform(operations::openUrlContexts);
    EXPECT_THAT(own.called, SizeIs(3));
    EXPECT_THAT(pushMessages(), ElementsAre("didReceiveRemoteNotification:fetchCompletionHandler", "openURLContexts"));
}

TEST_F(InterceptionTest, WhoeverPutsThemselvesInFrontLaterStaysThere) {
    Handlers own({operations::handleOpenUrl});
    host.application->setDelegate(own.delegate);
    int inFront = 0;
    own.type->addOperation("other:", [&](Delegate& self, const DelegateArguments& arguments) {
        ++inFront;
        return self.perform("other:", arguments);
    });
    own.type->exchangeImplementations(operations::handleOpenUrl, "other:");
    EXPECT_EQ(own.perform(operations::handleOpenUrl), true);
    EXPECT_THAT(pushMessages(), ElementsAre("handleOpenURL"));
    shutdown();
    EXPECT_EQ(own.perform(operations::handleOpenUrl), true);
    EXPECT_THAT(own.called, SizeIs(2));
    EXPECT_EQ(inFront, 2);
    for (std::size_t launches = 2; launches < 4; ++launches) {
        launch();
        EXPECT_EQ(own.perform(operations::handleOpenUrl), true);
        EXPECT_THAT(own.called, SizeIs(launches + 1));
        EXPECT_THAT(pushMessages(), SizeIs(launches));
        shutdown();
    }
    launch();
}

}  // namespace
}  // namespace orbinel::testing
