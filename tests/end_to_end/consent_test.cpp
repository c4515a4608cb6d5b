#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

#include "tests/end_to_end/linux_library.hpp"
#include "tests/linux/temporary_directory.hpp"

// What leaves a device while a consent is withheld is what docs/privacy.md lists, and nothing else.
namespace orbinel::testing {

namespace {

using ::testing::ElementsAre;
using ::testing::IsSubsetOf;

std::set<std::string> pathsOf(const LoopbackBackend& backend) {
    std::set<std::string> paths;
    for (const auto& arrival : backend.arrivals()) paths.insert(arrival.path);
    return paths;
}

/// Everything that an application may call.
void useEverything() {
    Orbinel::tagEvent("seen").addParameterWithInt(sessionNumber, 99).build();
    Orbinel::signUpConfirmation();
    Orbinel::getCurrentUser()
        .setName("Ada")
        .setEmail("ada@acme.com")
        .login(OrbinelIdentifiers().addEmail("ada@acme.com"));
    const auto product = Orbinel::createNewProductWithID("shoe", "Shoe", {"Shoes"}, "https://img", 9.5, "EUR");
    Orbinel::visitCartPageWithProducts({product});
    Orbinel::itemAddedToCartWithProduct(product);
    Orbinel::itemPurchasedWithSaleID("sale", product);
    EXPECT_EQ(Orbinel::getContentStringWithName("title", "Welcome", OrbinelVariableTypeContent), "Welcome");
    Orbinel::getSmartRecommendationWithID(1, "en", "EUR", [](const Dictionary&) { ADD_FAILURE(); });
    Orbinel::clickSmartRecommendationProductWithID(1, product);
    Orbinel::sendError("error", "here");
}

TEST(WithheldConsent, NothingGatedLeavesTheDevice) {
    hosts::TemporaryDirectory directory;
    LoopbackBackend backend;
    std::atomic<bool> refusesStops{true};  // so that stops are left in the queue
    backend.answer([&](const std::string& path, httplib::Response& response) {
        const auto start = R"({"smart_recommendations": {"1": ")" + backend.origin + R"(/recommend"},)" +
                           R"("is_logging_enabled": false})";
        response.set_content(path == startPath ? start : "{}", "application/json");
        if (path == stopPath && refusesStops) response.status = 503;
        return response.status != 503;
    });
    LinuxLibrary library(directory.path(), backend.origin);
    ASSERT_NO_FATAL_FAILURE(library.launch());
    ASSERT_NO_FATAL_FAILURE(library.runSession(1));
    ASSERT_TRUE(library.runUntilQuiet());

    for (const bool mobile : {false, true}) {
        Orbinel::setGDPRConsent(mobile);
        Orbinel::setMobileGDPRConsent(!mobile);
        ASSERT_TRUE(library.runUntilQuiet());
        backend.forget();
        useEverything();
        for (int period = 0; period < 3; ++period) {
            library.becomeActive();
            useEverything();
            library.host->runMainQueue();
            library.enterBackground();
            ASSERT_TRUE(library.runUntilQuiet());
        }
        shutdown();
        ASSERT_NO_FATAL_FAILURE(library.launch());  // a consent outlives the launch
        library.becomeActive();
        useEverything();
        library.enterBackground();
        ASSERT_TRUE(library.runUntilQuiet());
        EXPECT_THAT(pathsOf(backend), IsSubsetOf({"/api/v1/privacy/gdpr/consent/set"}));
    }

    library.services.notificationCentre->post(platform::notification_names::willTerminate, {});
    ASSERT_TRUE(library.runUntilQuiet());
    EXPECT_TRUE(pathsOf(backend).contains("/api/wizard/v1/disconnect"));  // the one thing more that the page names

    // Given again, what waited goes out, and what was dropped does not come back.
    Orbinel::setMobileGDPRConsent(true);
    refusesStops = false;
    ASSERT_NO_FATAL_FAILURE(library.runSession(2));
    ASSERT_TRUE(library.runUntilQuiet());
    EXPECT_THAT(backend.takenNumbers(), ElementsAre(1, 2));
}

}  // namespace

}  // namespace orbinel::testing
