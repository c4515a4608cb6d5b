#include <string>
#include <vector>

#include "support/library_test.hpp"

// What every operation of the facade promises alike: whether it asks the gate, and what it tells the wizard.
namespace orbinel::testing {
namespace {

enum Gate { free, gated };
enum Feed { kept, shown, shownAlways };  // shown: at the vendor's panel, too; always: also where the gate is closed

struct Row {
    Gate gate;
    void (*call)();
    std::string methodType = {};  // of the first feed; empty: nothing is fed
    Feed feed = kept;
};

OrbinelProduct shoe() {
    return Orbinel::createNewProductWithID("shoe", "Shoe", {"Shoes"}, "https://s/1.png", 9.5, "EUR");
}
const OrbinelProduct& madeWhileOpen() {
    static const auto product = shoe();
    return product;
}
void ignore(const Dictionary&) {}
void ignoreFor(int&, const Dictionary&) {}
const std::weak_ptr<int> nobody;
const Dictionary push{{"aps", Dictionary()}, {"source", "Orbinel"}};
constexpr auto type = OrbinelVariableTypeContent;

const std::vector<Row> rows{
    {free, [] { Orbinel::initWithLaunchOptions({}, "acme", "group.acme"); }, "initSDK"},
    {free, [] { Orbinel::initWithLaunchOptions({}, "acme", "group.acme", "https://api.test"); }, "initSDK"},
    {free, [] { Orbinel::setGDPRConsent(false); }, "setGDPRConsent", shown},
    {free, [] { Orbinel::setMobileGDPRConsent(false); }, "setMobileGDPRConsent", shown},
    {free, [] { Orbinel::enableIDFACollection(true); }, "enableIDFACollection"},
    {free, [] { Orbinel::enableIpCollection(true); }, "enableIpCollection"},
    {free, [] { Orbinel::enableLocationCollection(true); }, "enableLocationCollection"},
    {free, [] { Orbinel::enableCarrierCollection(true); }, "enableCarrierCollection"},
    {gated, [] { Orbinel::tagEvent("seen").build(); }, "tagEvent", shown},
    {gated, [] { Orbinel::signUpConfirmation(); }, "signUpConfirmation"},
    {gated, [] { (void)Orbinel::getOrbinelID(); }},
    {gated, [] { Orbinel::registerOrbinelIDListenerWithSelector([](int&, const std::string&) {}, nobody); }},
    {free, [] { Orbinel::registerOrbinelCallbackWithSelector(ignoreFor, nobody); }, "registerOrbinelCallback", shown},
    {gated, [] { (void)shoe(); }, "createNewProduct", shownAlways},
    {gated, [] { Orbinel::visitHomepage(); }},
    {gated, [] { Orbinel::visitListingPageWithTaxonomy({"Shoes"}); }},
    {gated, [] { Orbinel::visitProductDetailPageWithProduct(madeWhileOpen()); }},
    {gated, [] { Orbinel::visitCartPageWithProducts({madeWhileOpen()}); }},
    {gated, [] { Orbinel::visitWishlistWithProducts({madeWhileOpen()}); }},
    {gated, [] { Orbinel::itemPurchasedWithSaleID("sale", madeWhileOpen()); }},
    {gated, [] { Orbinel::itemAddedToCartWithProduct(madeWhileOpen()); }},
    {gated, [] { Orbinel::itemRemovedFromCartWithProductID("shoe"); }},
    {gated, [] { Orbinel::cartCleared(); }},
    {gated, [] { Orbinel::itemAddedToWishlistWithProduct(madeWhileOpen()); }},
    {gated, [] { Orbinel::itemRemovedFromWishlistWithProductID("shoe"); }},
    {gated, [] { Orbinel::wishlistCleared(); }},
    {gated, [] { (void)Orbinel::getContentStringWithName("n", "d", type); }},
    {gated, [] { (void)Orbinel::getContentBoolWithName("n", true, type); }},
    {gated, [] { (void)Orbinel::getContentIntWithName("n", 1, type); }},
    {gated, [] { (void)Orbinel::getContentStringWithoutCache("n", "d", type); }},
    {gated, [] { (void)Orbinel::getContentBoolWithoutCache("n", true, type); }},
    {gated, [] { (void)Orbinel::getContentIntWithoutCache("n", 1, type); }},
    {free, [] { Orbinel::removeTestVariables(); }},
    {gated, [] { Orbinel::getSmartRecommendationWithID(1, "en", "EUR", ignore); }, "getSmartRecommendation", shown},
    {gated, [] { Orbinel::getSmartRecommendationWithProduct(madeWhileOpen(), 1, "en", ignore); },
     "getSmartRecommendationWithProduct", shown},
    {gated, [] { Orbinel::getSmartRecommendationWithProductIDs({"shoe"}, 1, "en", "EUR", ignore); },
     "getSmartRecommendationWithProductIDs", shown},
    {gated, [] { Orbinel::clickSmartRecommendationProductWithID(1, madeWhileOpen()); }},
    {free, [] { Orbinel::getMessageCenterDataWithLimit(3, Date{1}, Date{2}, {}); }, "getMessageCenterData", shown},
    {gated, [] { Orbinel::removeInapp(); }},
    {free, [] { Orbinel::enableInAppMessages(); }, "logInAppMessageAction"},
    {free, [] { Orbinel::disableInAppMessages(); }, "logInAppMessageAction"},
    {free, [] { Orbinel::reenableTemplates(); }},
    {free, [] { Orbinel::disableTemplates(); }},
    {free, [] { Orbinel::enableTemplateDebugging(); }},
    {gated, [] { Orbinel::setCustomRegularFont("Arial"); }, "setCustomRegularFont"},
    {gated, [] { Orbinel::setCustomBoldFont("Arial"); }, "setCustomBoldFont"},
    {gated, [] { Orbinel::setCustomItalicFont("Arial"); }, "setCustomItalicFont"},
    {free, [] { Orbinel::showTestInapp({}, push); }, "testInAppReceived"},
    {free, [] { Orbinel::showNativeAppReview(); }},
    {free, [] { Orbinel::registerWithQuietPermission(true); }, "registerWithQuietPermission", shown},
    {free, [] { Orbinel::registerDeviceTokenWithApplication(nullptr, {}); }, "registerDeviceToken"},
    {free, [] { Orbinel::setPushToken("t"); }},
    {free, [] { Orbinel::setForegroundPushCallback(ignoreFor, nobody); }},
    {free, [] { Orbinel::setActiveForegroundPushView(); }},
    {gated, [] { Orbinel::triggerPushProcessWithUserInfo(push); }, "handlePushLog", shown},
    {gated, [] { Orbinel::handlePushLogWithUserInfo(push); }, "handlePushLog", shown},
    {free, [] { Orbinel::trackInteractiveLogWithUserInfo(push); }, "trackInteractiveLog"},
    {free, [] { (void)Orbinel::getPushInfo(push); }},
    {free, [] { Orbinel::setPushActionWithPushInfo(push); }, "pushReceived", shown},
    {gated, [] { Orbinel::handleUniversalLink({}); }},
    {free, [] { Orbinel::handleUrl("acme://cart"); }},
    {free, [] { Orbinel::disableAutoIntegration(); }},
    {free, [] { Orbinel::setHybridSDKVersion("F-1"); }},
    {free, [] { Orbinel::sendError("e", "d"); }, "sendError", shown},
};

class FacadeTable : public LibraryTest {
protected:
    void callWithGate(const Row& row, bool open) {
        world().helper.setSessionGdprConsent(open);
        world().helper.setMobileSessionGdprConsent(true);
        host.settle();
        sinks.clear();
        row.call();
    }
};

TEST_F(FacadeTable, EveryOperationAsksTheGateAndFeedsTheWizardAsItPromises) {
    initialise();
    (void)madeWhileOpen();
    for (const auto& row : rows) {
        SCOPED_TRACE("row " + std::to_string(&row - rows.data()) + " " + row.methodType);
        callWithGate(row, true);
        const auto fed = sinks.feeds(row.methodType);
        ASSERT_EQ(fed.empty(), row.methodType.empty());
        EXPECT_TRUE(fed.empty() || fed[0].shouldFeed == (row.feed != kept));

        callWithGate(row, false);
        EXPECT_EQ(sinks.count("SessionGdprConsent is false. Cannot proceed."), row.gate == gated ? 1U : 0U);
        const bool isFed = !row.methodType.empty() && (row.gate == free || row.feed == shownAlways);
        EXPECT_EQ(sinks.feeds(row.methodType).empty(), !isFed);
    }
}

}  // namespace
}  // namespace orbinel::testing
