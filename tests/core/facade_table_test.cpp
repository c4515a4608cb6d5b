#include <string>
#include <vector>

#include "support/library_test.hpp"

// What every operation of the facade promises alike: whether it asks the gate, and what it tells the wizard.
namespace orbinel::testing {
namespace {

enum class Gate { asked, not_asked };

struct Row {
    std::string name;
    Gate gate;
    void (*call)();
    std::string methodType;    // what the wizard is fed; empty: nothing of its own
    bool forThePanel = false;  // fed where the wizard is connected, too
    bool fedByClosedGate = false;
};

OrbinelProduct shoe() {
    return Orbinel::createNewProductWithID("shoe", "Shoe", {"Shoes"}, "https://s/1.png", 9.5, "EUR");
}
void ignore(const Dictionary&) {}
const Dictionary pushPayload{{"aps", Dictionary()}, {"source", "Orbinel"}};

std::vector<Row> consentsAndUsers() {
    return {
        {"init", Gate::not_asked, [] { Orbinel::initWithLaunchOptions({}, "acme", "group.acme"); }, "initSDK"},
        {"init with endpoint", Gate::not_asked,
         [] { Orbinel::initWithLaunchOptions({}, "acme", "group.acme", "https://api.test"); }, "initSDK"},
        {"setGDPRConsent", Gate::not_asked, [] { Orbinel::setGDPRConsent(false); }, "setGDPRConsent", true},
        {"setMobileGDPRConsent", Gate::not_asked, [] { Orbinel::setMobileGDPRConsent(false); }, "setMobileGDPRConsent",
         true},
        {"enableIDFACollection", Gate::not_asked, [] { Orbinel::enableIDFACollection(true); }, "enableIDFACollection"},
        {"enableIpCollection", Gate::not_asked, [] { Orbinel::enableIpCollection(true); }, "enableIpCollection"},
        {"enableLocationCollection", Gate::not_asked, [] { Orbinel::enableLocationCollection(true); },
         "enableLocationCollection"},
        {"enableCarrierCollection", Gate::not_asked, [] { Orbinel::enableCarrierCollection(true); },
         "enableCarrierCollection"},
        {"tagEvent", Gate::asked, [] { Orbinel::tagEvent("seen").build(); }, "tagEvent", true},
        {"signUpConfirmation", Gate::asked, [] { Orbinel::signUpConfirmation(); }, "signUpConfirmation"},
        {"getOrbinelID", Gate::asked, [] { (void)Orbinel::getOrbinelID(); }, ""},
        {"registerOrbinelIDListener", Gate::asked,
         [] { Orbinel::registerOrbinelIDListenerWithSelector([](int&, const std::string&) {}, std::weak_ptr<int>()); },
         ""},
        {"registerOrbinelCallback", Gate::not_asked,
         [] { Orbinel::registerOrbinelCallbackWithSelector([](int&, const Dictionary&) {}, std::weak_ptr<int>()); },
         "registerOrbinelCallback", true},
    };
}

std::vector<Row> shop() {
    return {
        {"createNewProduct", Gate::asked, [] { (void)shoe(); }, "createNewProduct", true, true},
        {"visitHomepage", Gate::asked, [] { Orbinel::visitHomepage(); }, ""},
        {"visitListingPage", Gate::asked, [] { Orbinel::visitListingPageWithTaxonomy({"Shoes"}); }, ""},
        {"itemRemovedFromCart", Gate::asked, [] { Orbinel::itemRemovedFromCartWithProductID("shoe"); }, ""},
        {"cartCleared", Gate::asked, [] { Orbinel::cartCleared(); }, ""},
        {"itemRemovedFromWishlist", Gate::asked, [] { Orbinel::itemRemovedFromWishlistWithProductID("shoe"); }, ""},
        {"wishlistCleared", Gate::asked, [] { Orbinel::wishlistCleared(); }, ""},
    };
}

/// Made of a product that was made before the gate closed.
std::vector<Row> shopOfAProduct() {
    static OrbinelProduct product;
    product = shoe();
    return {
        {"visitProductDetailPage", Gate::asked, [] { Orbinel::visitProductDetailPageWithProduct(product); }, ""},
        {"visitCartPage", Gate::asked, [] { Orbinel::visitCartPageWithProducts({product}); }, ""},
        {"visitWishlist", Gate::asked, [] { Orbinel::visitWishlistWithProducts({product}); }, ""},
        {"itemPurchased", Gate::asked, [] { Orbinel::itemPurchasedWithSaleID("sale", product); }, ""},
        {"itemAddedToCart", Gate::asked, [] { Orbinel::itemAddedToCartWithProduct(product); }, ""},
        {"itemAddedToWishlist", Gate::asked, [] { Orbinel::itemAddedToWishlistWithProduct(product); }, ""},
        {"getSmartRecommendationWithProduct", Gate::asked,
         [] { Orbinel::getSmartRecommendationWithProduct(product, 1, "en", ignore); },
         "getSmartRecommendationWithProduct", true},
        {"clickSmartRecommendation", Gate::asked, [] { Orbinel::clickSmartRecommendationProductWithID(1, product); },
         ""},
    };
}

std::vector<Row> whatIsServed() {
    constexpr auto type = OrbinelVariableTypeContent;
    return {
        {"getContentString", Gate::asked, [] { (void)Orbinel::getContentStringWithName("n", "d", type); }, ""},
        {"getContentBool", Gate::asked, [] { (void)Orbinel::getContentBoolWithName("n", true, type); }, ""},
        {"getContentInt", Gate::asked, [] { (void)Orbinel::getContentIntWithName("n", 1, type); }, ""},
        {"getContentStringWithoutCache", Gate::asked,
         [] { (void)Orbinel::getContentStringWithoutCache("n", "d", type); }, ""},
        {"getContentBoolWithoutCache", Gate::asked, [] { (void)Orbinel::getContentBoolWithoutCache("n", true, type); },
         ""},
        {"getContentIntWithoutCache", Gate::asked, [] { (void)Orbinel::getContentIntWithoutCache("n", 1, type); }, ""},
        {"removeTestVariables", Gate::not_asked, [] { Orbinel::removeTestVariables(); }, ""},
        {"getSmartRecommendation", Gate::asked, [] { Orbinel::getSmartRecommendationWithID(1, "en", "EUR", ignore); },
         "getSmartRecommendation", true},
        {"getSmartRecommendationWithProductIDs", Gate::asked,
         [] { Orbinel::getSmartRecommendationWithProductIDs({"shoe"}, 1, "en", "EUR", ignore); },
         "getSmartRecommendationWithProductIDs", true},
        {"getMessageCenterData", Gate::not_asked,
         [] { Orbinel::getMessageCenterDataWithLimit(3, Date{1}, Date{2}, [](const Array&) {}); },
         "getMessageCenterData", true},
        {"removeInapp", Gate::asked, [] { Orbinel::removeInapp(); }, ""},
        {"enableInAppMessages", Gate::not_asked, [] { Orbinel::enableInAppMessages(); }, "logInAppMessageAction"},
        {"disableInAppMessages", Gate::not_asked, [] { Orbinel::disableInAppMessages(); }, "logInAppMessageAction"},
        {"reenableTemplates", Gate::not_asked, [] { Orbinel::reenableTemplates(); }, ""},
        {"disableTemplates", Gate::not_asked, [] { Orbinel::disableTemplates(); }, ""},
        {"enableTemplateDebugging", Gate::not_asked, [] { Orbinel::enableTemplateDebugging(); }, ""},
        {"setCustomRegularFont", Gate::asked, [] { Orbinel::setCustomRegularFont("Arial"); }, "setCustomRegularFont"},
        {"setCustomBoldFont", Gate::asked, [] { Orbinel::setCustomBoldFont("Arial"); }, "setCustomBoldFont"},
        {"setCustomItalicFont", Gate::asked, [] { Orbinel::setCustomItalicFont("Arial"); }, "setCustomItalicFont"},
        {"showNativeAppReview", Gate::not_asked, [] { Orbinel::showNativeAppReview(); }, ""},
    };
}

std::vector<Row> pushesAndTools() {
    return {
        {"registerWithQuietPermission", Gate::not_asked, [] { Orbinel::registerWithQuietPermission(true); },
         "registerWithQuietPermission", true},
        {"registerDeviceToken", Gate::not_asked, [] { Orbinel::registerDeviceTokenWithApplication(nullptr, {}); },
         "registerDeviceToken"},
        {"setPushToken", Gate::not_asked, [] { Orbinel::setPushToken("t"); }, ""},
        {"setForegroundPushCallback", Gate::not_asked,
         [] { Orbinel::setForegroundPushCallback([](int&, const Dictionary&) {}, std::weak_ptr<int>()); }, ""},
        {"setActiveForegroundPushView", Gate::not_asked, [] { Orbinel::setActiveForegroundPushView(); }, ""},
        {"triggerPushProcess", Gate::asked, [] { Orbinel::triggerPushProcessWithUserInfo(pushPayload); },
         "handlePushLog", true},
        {"handlePushLog", Gate::asked, [] { Orbinel::handlePushLogWithUserInfo(pushPayload); }, "handlePushLog", true},
        {"trackInteractiveLog", Gate::not_asked, [] { Orbinel::trackInteractiveLogWithUserInfo(pushPayload); },
         "trackInteractiveLog"},
        {"getPushInfo", Gate::not_asked, [] { (void)Orbinel::getPushInfo(pushPayload); }, ""},
        {"setPushAction", Gate::not_asked, [] { Orbinel::setPushActionWithPushInfo(pushPayload); }, "pushReceived",
         true},
        {"handleUniversalLink", Gate::asked, [] { Orbinel::handleUniversalLink({}); }, ""},
        {"handleUrl", Gate::not_asked, [] { Orbinel::handleUrl("acme://cart"); }, ""},
        {"disableAutoIntegration", Gate::not_asked, [] { Orbinel::disableAutoIntegration(); }, ""},
        {"setHybridSDKVersion", Gate::not_asked, [] { Orbinel::setHybridSDKVersion("F-1"); }, ""},
        {"sendError", Gate::not_asked, [] { Orbinel::sendError("e", "d"); }, ""},
    };
}

class FacadeTable : public LibraryTest {
protected:
    void openGate(bool open) {
        world().helper.setSessionGdprConsent(open);
        world().helper.setMobileSessionGdprConsent(true);
        host.settle();
        sinks.clear();
    }
    void hold(const Row& row) {
        SCOPED_TRACE(row.name);
        openGate(true);
        row.call();
        const auto fed = sinks.feeds(row.methodType);
        ASSERT_EQ(fed.empty(), row.methodType.empty());
        EXPECT_TRUE(fed.empty() || (fed[0].shouldFeed == row.forThePanel && !fed[0].isError));

        openGate(false);
        row.call();
        const bool asked = row.gate == Gate::asked;
        EXPECT_EQ(sinks.count("SessionGdprConsent is false. Cannot proceed."), asked ? 1U : 0U);
        const bool fedNow = !row.methodType.empty() && (!asked || row.fedByClosedGate);
        EXPECT_EQ(sinks.feeds(row.methodType).empty(), !fedNow);
    }
};

TEST_F(FacadeTable, EveryOperationAsksTheGateAndFeedsTheWizardAsItPromises) {
    initialise();
    for (const auto& rows : {consentsAndUsers(), shop(), shopOfAProduct(), whatIsServed(), pushesAndTools()}) {
        for (const auto& row : rows) hold(row);
    }
}

}  // namespace
}  // namespace orbinel::testing
