#include <thread>

#include "support/library_test.hpp"

namespace orbinel::testing {
namespace {

struct Target {
    void onCallback(const Dictionary& callback) { received.push_back(callback); }
    void onId(const std::string& id) { ids.push_back(id); }
    std::vector<Dictionary> received;
    std::vector<std::string> ids;
};

void callWithoutArguments() {
    Orbinel::initWithLaunchOptions(std::nullopt, nullptr, nullptr);
    Orbinel::initWithLaunchOptions(Dictionary{{"k", Null{}}}, nullptr, nullptr, nullptr);
    Orbinel::initSDK(nullptr, std::nullopt);
    Orbinel::reinitWithPartnerName(nullptr);
    Orbinel::sendError(nullptr, nullptr);
    for (const auto call :
         {&Orbinel::setCustomRegularFont, &Orbinel::setCustomBoldFont, &Orbinel::setCustomItalicFont,
          &Orbinel::setPushToken, &Orbinel::setHybridSDKVersion, &Orbinel::handleUrl,
          &Orbinel::itemRemovedFromCartWithProductID, &Orbinel::itemRemovedFromWishlistWithProductID}) {
        call(nullptr);
    }
    for (const auto* url : {"", "acme://test_device/token", "acme://connect_wizard/token"}) Orbinel::handleUrl(url);
    const Dictionary push{{"aps", Null{}}, {"source", "Orbinel"}, {"camp_id", Value()}, {"inapp_test", Null{}}};
    for (const auto call : {&Orbinel::handlePushLogWithUserInfo, &Orbinel::triggerPushProcessWithUserInfo,
                            &Orbinel::setPushActionWithPushInfo, &Orbinel::trackInteractiveLogWithUserInfo}) {
        for (const auto& given : {std::optional<Dictionary>(), std::optional(Dictionary()), std::optional(push)}) {
            call(given);
        }
    }
    Orbinel::getSmartRecommendationWithID(1, nullptr, nullptr, {});
    Orbinel::getSmartRecommendationWithProductIDs({}, 1, nullptr, nullptr, {});
    Orbinel::getMessageCenterDataWithLimit(3, std::nullopt, std::nullopt, {});
}

void callWithoutProduct() {
    const auto product = Orbinel::createNewProductWithID(nullptr, nullptr, {}, nullptr, 0, nullptr);
    EXPECT_FALSE(product.isProductValid());
    Orbinel::visitListingPageWithTaxonomy({});
    Orbinel::visitProductDetailPageWithProduct(product);
    Orbinel::visitCartPageWithProducts({product, product});
    Orbinel::visitWishlistWithProducts({});
    Orbinel::itemAddedToCartWithProduct(product);
    Orbinel::itemPurchasedWithSaleID(nullptr, product);
    Orbinel::itemAddedToWishlistWithProduct(product);
    Orbinel::clickSmartRecommendationProductWithID(1, product);
    Orbinel::getSmartRecommendationWithProduct(product, 1, nullptr, {});
}

void expectNeutralAnswers() {
    EXPECT_FALSE(Orbinel::partnerNameIsValid({}));
    EXPECT_EQ(Orbinel::getSDKVersion(), "13.9.0");
    EXPECT_EQ(Orbinel::getPushInfo(std::nullopt), std::nullopt);
    EXPECT_EQ(Orbinel::getContentStringWithName("n", "d", OrbinelVariableTypeContent), "d");
    EXPECT_EQ(Orbinel::getContentStringWithoutCache("n", "d", OrbinelVariableTypeElement), "d");
    EXPECT_EQ(Orbinel::getContentStringWithName(nullptr, nullptr, OrbinelVariableTypeContent), "");
    EXPECT_EQ(Orbinel::getContentStringWithoutCache(nullptr, nullptr, OrbinelVariableTypeContent), "");
    for (const bool fallback : {false, true}) {
        EXPECT_EQ(Orbinel::getContentBoolWithName(nullptr, fallback, OrbinelVariableTypeContent), fallback);
        EXPECT_EQ(Orbinel::getContentBoolWithoutCache("n", fallback, OrbinelVariableTypeContent), fallback);
    }
    EXPECT_EQ(Orbinel::getContentIntWithName(nullptr, -7, OrbinelVariableTypeContent), -7);
    EXPECT_EQ(Orbinel::getContentIntWithoutCache("n", -7, OrbinelVariableTypeContent), -7);
    const auto nothing = [](const auto& answer) { EXPECT_THAT(answer, IsEmpty()); };
    Orbinel::getSmartRecommendationWithID(1, "en", "EUR", nothing);
    Orbinel::getSmartRecommendationWithProductIDs({"shoe"}, 1, "en", "EUR", nothing);
    Orbinel::getMessageCenterDataWithLimit(3, Date{1}, Date{2}, nothing);
}

/// The objects that an application holds.
void useObjects() {
    auto event = Orbinel::tagEvent(nullptr)
                     .addParameterWithString(nullptr, nullptr)
                     .addParameterWithDate("d", std::nullopt)
                     .addParameterWithArray("a", {})
                     .addParameters({{"x", Value()}, {"y", Null{}}});
    event.build();
    auto copy = event;
    auto moved = std::move(event);
    event = copy;
    moved.build();
    OrbinelEvent("free").addParameterWithBoolean("b", true).build();
    auto user = Orbinel::getCurrentUser();
    user.setName(nullptr).setAge(36).setCustomAttributeWithInt("n", 1).unsetCustomAttribute(nullptr);
    user.setPushOptin(true).setLocationOptin(true).setBirthday(std::nullopt);
    const auto never = [](const std::string&) { ADD_FAILURE(); };
    user.login(OrbinelIdentifiers().addEmail(nullptr), never);
    user.login(OrbinelIdentifiers().addUserID("u"), never);
    user.logout();
}

void callWithLittle() {
    callWithoutArguments();
    callWithoutProduct();
    expectNeutralAnswers();
    useObjects();
}

TEST(FacadeWithoutAWorld, TakesAbsentArgumentsAndAnswersNeutrallyAtAnyTime) {
    callWithLittle();
    EXPECT_EQ(Orbinel::getOrbinelID(), std::nullopt);
    headless::HeadlessHost host;
    ASSERT_TRUE(start(host.services()));
    callWithLittle();
    auto event = Orbinel::tagEvent("kept");
    shutdown();
    callWithLittle();
    event.addParameterWithInt("n", 1).build();
    std::thread(callWithLittle).join();
    shutdown();
    EXPECT_THAT(host.http->sent(), IsEmpty());
}

TEST(FacadeWithoutAWorld, SaysWhyItDoesNotStart) {
    headless::HeadlessHost host;
    auto services = host.services();
    services.http = nullptr;
    EXPECT_FALSE(start(services));
    services.console = nullptr;
    EXPECT_FALSE(start(services));
    ASSERT_TRUE(start(host.services()));
    EXPECT_FALSE(start(host.services()));
    EXPECT_THAT(host.console->lines(), ElementsAre("orbinel::start: the service \"http\" is missing.",
                                                   "orbinel::start: the library is already started."));
    shutdown();
    EXPECT_TRUE(start(host.services()));
    shutdown();
}

using FacadeTest = LibraryTest;

TEST_F(FacadeTest, TheGateStopsGatedOperationsAndLogsEveryReason) {
    world().helper.setSessionGdprConsent(false);
    world().helper.setSdkDisabled(true);
    Orbinel::tagEvent("seen").build();
    EXPECT_EQ(Orbinel::tagEvent("seen").getName(), "");
    EXPECT_EQ(sinks.count("SessionGdprConsent is false. Cannot proceed."), 2U);
    EXPECT_EQ(sinks.count("sdkDisabled is true."), 2U);
    EXPECT_EQ(Orbinel::getOrbinelID(), std::nullopt);
    EXPECT_THAT(eventNames(), IsEmpty());
}

TEST_F(FacadeTest, TellsTheTargetOfASessionStartOnTheNextTurnWhileItLives) {
    initialise();
    auto replaced = std::make_shared<Target>();
    auto target = std::make_shared<Target>();
    Orbinel::registerOrbinelCallbackWithSelector(&Target::onCallback, std::weak_ptr(replaced));
    Orbinel::registerOrbinelCallbackWithSelector(&Target::onCallback, std::weak_ptr(target));
    runSession([] {});
    EXPECT_THAT(target->received, ElementsAre(Dictionary{{"type", 6}}));
    EXPECT_THAT(replaced->received, IsEmpty());

    Orbinel::registerOrbinelCallbackWithSelector([](Target&, const Dictionary&) { throw std::runtime_error("mine"); },
                                                 std::weak_ptr(target));
    runSession([] {});
    ASSERT_THAT(sinks.feeds("sendError"), SizeIs(1));
    target.reset();
    runSession([] {});
    EXPECT_THAT(sinks.feeds("sendError"), SizeIs(1));
    EXPECT_THAT(backend.stops(), SizeIs(3));
}

TEST_F(FacadeTest, TellsListenersOfANewIdAndForgetsThoseThatAreGone) {
    initialise();
    auto target = std::make_shared<Target>();
    auto gone = std::make_shared<Target>();
    Orbinel::registerOrbinelIDListenerWithSelector([](Target&, const std::string&) { throw 1; }, std::weak_ptr(gone));
    Orbinel::registerOrbinelIDListenerWithSelector(&Target::onId, std::weak_ptr(target));
    Orbinel::registerOrbinelIDListenerWithSelector(&Target::onId, std::weak_ptr(target));
    backend.answerOnce("/session/start", {.body = R"({"new_id": "id-7"})"});
    runSession([] {});
    EXPECT_THAT(target->ids, ElementsAre("id-7"));
    EXPECT_EQ(Orbinel::getOrbinelID(), "id-7");
    EXPECT_THAT(sinks.feeds("sendError"), SizeIs(1));
    gone.reset();
    world().identity.setUnifiedOrbinelID("id-8");
    EXPECT_THAT(target->ids, ElementsAre("id-7", "id-8"));
}

// A switch that turns another one's collection hands over what a person has refused.
TEST_F(FacadeTest, EachCollectionSwitchDecidesOnItsOwnEntryAlone) {
    const auto entries = [] { return *world().deviceAttributes.getDeviceAttributes().ifDictionary(); };
    const std::vector<std::pair<void (*)(bool) noexcept, std::string>> switches{
        {&Orbinel::enableIDFACollection, "idfa"},
        {&Orbinel::enableIpCollection, "is_ip_disabled"},
        {&Orbinel::enableLocationCollection, "is_location_disabled"},
        {&Orbinel::enableCarrierCollection, "carrier"}};
    for (const auto& [enable, key] : switches) {
        enable(false);
        auto off = entries();
        enable(true);
        auto on = entries();
        EXPECT_NE(off[key], on[key]) << key;
        off.erase(key);
        on.erase(key);
        EXPECT_EQ(off, on) << key;
    }
    EXPECT_EQ(entries()["is_ip_disabled"], false);
    EXPECT_EQ(entries()["is_location_disabled"], false);
    EXPECT_EQ(entries()["carrier"], "Headless Mobile");
    EXPECT_TRUE(entries().contains("idfa"));
    EXPECT_EQ(sinks.feeds("enableIpCollection").at(0).data, (Dictionary{{"value", false}}));
    EXPECT_FALSE(sinks.feeds("enableIpCollection")[0].shouldFeed);
}

TEST_F(FacadeTest, HandsCrashReportsToTheWizard) {
    initialise();
    Orbinel::sendError("it broke", "MyScreen");
    const auto fed = sinks.feeds("sendError");
    ASSERT_THAT(fed, SizeIs(1));
    EXPECT_TRUE(fed[0].isError && fed[0].shouldFeed);
    EXPECT_EQ(fed[0].data["error"], "it broke -- MyScreen");
    EXPECT_EQ(fed[0].data["platform"], "iOS");
    EXPECT_EQ(fed[0].data["udid"], stored(keys::udidCache));
}

TEST_F(FacadeTest, TheDevelopmentLogSaysWhatIsDroppedAndWhy) {
    Orbinel::tagEvent("Seen").build();
    EXPECT_THAT(host.console->lines(), IsEmpty());
    Orbinel::setDevelopmentLog(true);
    Orbinel::tagEvent("Seen\n").build();
    EXPECT_THAT(host.console->lines(), Contains(HasSubstr("Dropped an event: its name \"Seen\\n\" is not valid.")));
}

}  // namespace
}  // namespace orbinel::testing
