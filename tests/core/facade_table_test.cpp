#include <regex>
#include <string>
#include <thread>
#include <vector>

#include "support/library_test.hpp"
#include "support/public_headers.hpp"

// What every operation of the facade promises alike: whether it asks the gate, what it tells the wizard, and that it is
// neutral without a library.
namespace orbinel::testing {
namespace {

enum Gate { free, gated };
enum Feed { kept, keptAlways, shown, shownAlways };  // shown: at the vendor's panel, too; always: also where gated

struct Row {
    std::string name;
    Gate gate;
    void (*call)();
    std::string methodType = {};  // of the first feed; empty: nothing is fed
    Feed feed = kept;
};

OrbinelProduct makeProduct() {
    return Orbinel::createNewProductWithID("shoe", "Shoe", {"Shoes"}, "https://s/1.png", 9.5, "EUR");
}
OrbinelProduct product;  // what the calls of a test take: of the library that runs
void ignore(const Dictionary&) {}
void ignoreFor(int&, const Dictionary&) {}
const std::weak_ptr<int> nobody;
const Dictionary push{{"aps", Dictionary()}, {"source", "Orbinel"}};
constexpr auto type = OrbinelVariableTypeContent;

const std::vector<Row> rows{
    {"initWithLaunchOptions:partnerName:appGroup:", free,
     [] { Orbinel::initWithLaunchOptions({}, "acme", "group.acme"); }, "initSDK"},
    {"initWithLaunchOptions:partnerName:appGroup:customEndpoint:", free,
     [] { Orbinel::initWithLaunchOptions({}, "acme", "group.acme", "https://api.test"); }, "initSDK"},
    {"initSDK:launchOptions:", free, [] { Orbinel::initSDK("acme", std::nullopt); }, "initSDK"},
    {"reinitWithPartnerName:", free, [] { Orbinel::reinitWithPartnerName("other"); }},
    {"partnerNameIsValid:", free, [] { (void)Orbinel::partnerNameIsValid("acme"); }},
    {"disableAutoIntegration", free, [] { Orbinel::disableAutoIntegration(); }},
    {"hybridApplicationDidBecomeActive", free, [] { Orbinel::hybridApplicationDidBecomeActive(); }},
    {"tagEvent:", gated, [] { Orbinel::tagEvent("seen").build(); }, "tagEvent", shown},
    {"signUpConfirmation", gated, [] { Orbinel::signUpConfirmation(); }, "signUpConfirmation"},
    {"setGDPRConsent:", free, [] { Orbinel::setGDPRConsent(false); }, "setGDPRConsent", shown},
    {"setMobileGDPRConsent:", free, [] { Orbinel::setMobileGDPRConsent(false); }, "setMobileGDPRConsent", shown},
    {"enableIDFACollection:", free, [] { Orbinel::enableIDFACollection(true); }, "enableIDFACollection"},
    {"enableIpCollection:", free, [] { Orbinel::enableIpCollection(true); }, "enableIpCollection"},
    {"enableLocationCollection:", free, [] { Orbinel::enableLocationCollection(true); }, "enableLocationCollection"},
    {"enableCarrierCollection:", free, [] { Orbinel::enableCarrierCollection(true); }, "enableCarrierCollection"},
    {"getCurrentUser", gated, [] { (void)Orbinel::getCurrentUser(); }},
    {"getOrbinelID", gated, [] { (void)Orbinel::getOrbinelID(); }},
    {"registerOrbinelIDListenerWithSelector:sender:", gated,
     [] { Orbinel::registerOrbinelIDListenerWithSelector([](int&, const std::string&) {}, nobody); }},
    {"registerOrbinelCallbackWithSelector:sender:", free,
     [] { Orbinel::registerOrbinelCallbackWithSelector(ignoreFor, nobody); }, "registerOrbinelCallback", shown},
    {"createNewProductWithID:name:taxonomy:imageURL:price:currency:", gated, [] { (void)makeProduct(); },
     "createNewProduct", shownAlways},
    {"visitHomepage", gated, [] { Orbinel::visitHomepage(); }},
    {"visitListingPageWithTaxonomy:", gated, [] { Orbinel::visitListingPageWithTaxonomy({"Shoes"}); }},
    {"visitProductDetailPageWithProduct:", gated, [] { Orbinel::visitProductDetailPageWithProduct(product); }},
    {"visitCartPageWithProducts:", gated, [] { Orbinel::visitCartPageWithProducts({product}); }},
    {"visitWishlistWithProducts:", gated, [] { Orbinel::visitWishlistWithProducts({product}); }},
    {"itemAddedToCartWithProduct:", gated, [] { Orbinel::itemAddedToCartWithProduct(product); }},
    {"itemRemovedFromCartWithProductID:", gated, [] { Orbinel::itemRemovedFromCartWithProductID("shoe"); }},
    {"cartCleared", gated, [] { Orbinel::cartCleared(); }},
    {"itemPurchasedWithSaleID:product:", gated, [] { Orbinel::itemPurchasedWithSaleID("sale", product); }},
    {"itemAddedToWishlistWithProduct:", gated, [] { Orbinel::itemAddedToWishlistWithProduct(product); }},
    {"itemRemovedFromWishlistWithProductID:", gated, [] { Orbinel::itemRemovedFromWishlistWithProductID("shoe"); }},
    {"wishlistCleared", gated, [] { Orbinel::wishlistCleared(); }},
    {"getContentStringWithName:defaultString:dataType:", gated,
     [] { (void)Orbinel::getContentStringWithName("n", "d", type); }},
    {"getContentBoolWithName:defaultBool:dataType:", gated,
     [] { (void)Orbinel::getContentBoolWithName("n", true, type); }},
    {"getContentIntWithName:defaultInt:dataType:", gated, [] { (void)Orbinel::getContentIntWithName("n", 1, type); }},
    {"getContentStringWithoutCache:defaultString:dataType:", gated,
     [] { (void)Orbinel::getContentStringWithoutCache("n", "d", type); }},
    {"getContentBoolWithoutCache:defaultBool:dataType:", gated,
     [] { (void)Orbinel::getContentBoolWithoutCache("n", true, type); }},
    {"getContentIntWithoutCache:defaultInt:dataType:", gated,
     [] { (void)Orbinel::getContentIntWithoutCache("n", 1, type); }},
    {"removeInapp", gated, [] { Orbinel::removeInapp(); }},
    {"removeInappWithCompletionHandler:", free, [] { Orbinel::removeInappWithCompletionHandler({}); }},
    {"enableInAppMessages", free, [] { Orbinel::enableInAppMessages(); }, "logInAppMessageAction"},
    {"disableInAppMessages", free, [] { Orbinel::disableInAppMessages(); }, "logInAppMessageAction"},
    {"reenableTemplates", free, [] { Orbinel::reenableTemplates(); }},
    {"disableTemplates", free, [] { Orbinel::disableTemplates(); }},
    {"enableTemplateDebugging", free, [] { Orbinel::enableTemplateDebugging(); }},
    {"setCustomRegularFont:", gated, [] { Orbinel::setCustomRegularFont("Arial"); }, "setCustomRegularFont"},
    {"setCustomBoldFont:", gated, [] { Orbinel::setCustomBoldFont("Arial"); }, "setCustomBoldFont"},
    {"setCustomItalicFont:", gated, [] { Orbinel::setCustomItalicFont("Arial"); }, "setCustomItalicFont"},
    {"showTestInapp:pushInfo:", gated, [] { Orbinel::showTestInapp({}, push); }, "testInAppReceived", keptAlways},
    {"showNativeAppReview", free, [] { Orbinel::showNativeAppReview(); }},
    {"registerWithQuietPermission:", free, [] { Orbinel::registerWithQuietPermission(true); },
     "registerWithQuietPermission", shown},
    {"registerDeviceTokenWithApplication:deviceToken:", free,
     [] { Orbinel::registerDeviceTokenWithApplication(nullptr, {}); }, "registerDeviceToken"},
    {"setPushToken:", free, [] { Orbinel::setPushToken("t"); }},
    {"handlePushLogWithUserInfo:", gated, [] { Orbinel::handlePushLogWithUserInfo(push); }, "handlePushLog", shown},
    {"triggerPushProcessWithUserInfo:", gated, [] { Orbinel::triggerPushProcessWithUserInfo(push); }, "handlePushLog",
     shown},
    {"setPushActionWithPushInfo:", free, [] { Orbinel::setPushActionWithPushInfo(push); }, "pushReceived", shown},
    {"getPushInfo:", free, [] { (void)Orbinel::getPushInfo(push); }},
    {"trackInteractiveLogWithUserInfo:", free, [] { Orbinel::trackInteractiveLogWithUserInfo(push); },
     "trackInteractiveLog"},
    {"setForegroundPushCallback:sender:", free, [] { Orbinel::setForegroundPushCallback(ignoreFor, nobody); }},
    {"setActiveForegroundPushView", free, [] { Orbinel::setActiveForegroundPushView(); }},
    {"handleUniversalLink:", gated, [] { Orbinel::handleUniversalLink({}); }},
    {"removeTestVariables", free, [] { Orbinel::removeTestVariables(); }},
    {"getSmartRecommendationWithID:locale:currency:smartRecommendation:", gated,
     [] { Orbinel::getSmartRecommendationWithID(1, "en", "EUR", ignore); }, "getSmartRecommendation", shown},
    {"getSmartRecommendationWithProduct:recommendationID:locale:smartRecommendation:", gated,
     [] { Orbinel::getSmartRecommendationWithProduct(product, 1, "en", ignore); }, "getSmartRecommendationWithProduct",
     shown},
    {"getSmartRecommendationWithProductIDs:recommendationID:locale:currency:smartRecommendation:", gated,
     [] { Orbinel::getSmartRecommendationWithProductIDs({"shoe"}, 1, "en", "EUR", ignore); },
     "getSmartRecommendationWithProductIDs", shown},
    {"clickSmartRecommendationProductWithID:product:", gated,
     [] { Orbinel::clickSmartRecommendationProductWithID(1, product); }},
    {"getMessageCenterDataWithLimit:startDate:endDate:success:", free,
     [] { Orbinel::getMessageCenterDataWithLimit(3, Date{1}, Date{2}, {}); }, "getMessageCenterData", shown},
    {"handleUrl:", free, [] { Orbinel::handleUrl("acme://cart"); }},
    {"sendError:desc:", free, [] { Orbinel::sendError("e", "d"); }, "sendError", shown},
    {"getSDKVersion", free, [] { (void)Orbinel::getSDKVersion(); }},
    {"eraseStoredData", free, [] { Orbinel::eraseStoredData(); }},
    {"eraseStoredDataWithCompletionHandler:", free, [] { Orbinel::eraseStoredDataWithCompletionHandler({}); }},
    {"setDevelopmentLog:", free, [] { Orbinel::setDevelopmentLog(false); }},
    {"setHybridSDKVersion:", free, [] { Orbinel::setHybridSDKVersion("F-1"); }},  // kept across launches, so the last
};

/// Every operation on this thread.
void callAll() {
    for (const auto& row : rows) row.call();
}

TEST(FacadeRows, AreTheOperationsOfTheHeaderWhichSaysOfEachWhetherItIsGated) {
    std::vector<std::string> names;
    for (const auto& row : rows) names.push_back(row.name);
    std::vector<std::string> declared;
    for (const auto& operation : publicOperations()) {
        if (operation.owner == "Orbinel") declared.push_back(operation.fullName());
    }
    EXPECT_THAT(names, ::testing::UnorderedElementsAreArray(declared));

    static const std::regex saysFree("\\b[Nn]ot gated\\b");
    static const std::regex saysGated("\\b[Gg]ated\\b");
    const auto contracts = facadeContracts();
    for (const auto& row : rows) {
        const auto& contract = contracts.at(row.name.substr(0, row.name.find(':')));
        const bool isFree = std::regex_search(contract, saysFree);
        EXPECT_EQ(isFree, row.gate == free) << row.name << ":" << contract;
        EXPECT_TRUE(isFree || std::regex_search(contract, saysGated)) << row.name << ":" << contract;
    }
}

TEST(FacadeRows, AreNeutralBeforeTheStartAndAfterTheEndOnAnyThread) {
    callAll();
    const headless::HeadlessHost host;
    ASSERT_TRUE(start(host.services()));
    product = makeProduct();
    shutdown();
    callAll();
    std::thread(callAll).join();
    EXPECT_THAT(host.http->sent(), IsEmpty());
    EXPECT_THAT(host.console->lines(), IsEmpty());
}

struct FacadeTable : LibraryTest {
    /// A library of its own for each call: the one before may be erased by now.
    void callWithGate(const Row& row, bool open) {
        host.settle();
        relaunch();
        initialise();
        world().helper.setSessionGdprConsent(true);  // a call before may have withheld them for good
        world().helper.setMobileSessionGdprConsent(true);
        product = makeProduct();
        world().helper.setSessionGdprConsent(open);
        host.settle();
        sinks.clear();
        row.call();
    }
};

TEST_F(FacadeTable, EveryOperationAsksTheGateAndFeedsTheWizardAsItPromises) {
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        callWithGate(row, true);
        const auto fed = sinks.feeds(row.methodType);
        ASSERT_EQ(fed.empty(), row.methodType.empty());
        EXPECT_TRUE(fed.empty() || fed[0].shouldFeed == (row.feed == shown || row.feed == shownAlways));

        callWithGate(row, false);
        EXPECT_EQ(sinks.count("SessionGdprConsent is false. Cannot proceed."), row.gate == gated ? 1U : 0U);
        const bool isFed =
            !row.methodType.empty() && (row.gate == free || row.feed == keptAlways || row.feed == shownAlways);
        EXPECT_EQ(sinks.feeds(row.methodType).empty(), !isFed);
    }
}

}  // namespace
}  // namespace orbinel::testing
