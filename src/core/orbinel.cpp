#include "orbinel/orbinel.hpp"

#include <exception>
#include <utility>

#include "base/guard.hpp"
#include "base/visit.hpp"
#include "core/current_world.hpp"
#include "core/erasure.hpp"
#include "core/start.hpp"
#include "core/world.hpp"
#include "push/push_info.hpp"

namespace orbinel {

namespace {

constexpr std::string_view signUpEvent = "sign_up_confirmation";

/// Runs the body of a public operation on the current world; without one, or when something is thrown, the neutral
/// value is returned.
template <typename Result, typename Body>
Result onWorld(const GuardedOperation& operation, Result neutral, Body&& body) noexcept {
    const Visit<World> world(current_world::entrance());
    if (!world) return neutral;
    return guarded(world->reports, operation, std::move(neutral), [&] { return body(*world); });
}

template <typename Body>
void onWorld(const GuardedOperation& operation, Body&& body) noexcept {
    onWorld(operation, false, [&](World& world) {
        body(world);
        return true;
    });
}

/// The same for gated operations.
template <typename Result, typename Body>
Result throughGate(const GuardedOperation& operation, Result neutral, Body&& body) noexcept {
    return onWorld(operation, neutral,
                   [&](World& world) { return world.helper.shouldProceed() ? body(world) : std::move(neutral); });
}

template <typename Body>
void throughGate(const GuardedOperation& operation, Body&& body) noexcept {
    throughGate(operation, false, [&](World& world) {
        body(world);
        return true;
    });
}

/// What an application's object holds of the world; of none where there is none.
template <typename Part>
LibraryPart<Part> partOf(const Visit<World>& world, Part World::*part) noexcept {
    return world ? world->part((*world).*part) : LibraryPart<Part>();
}

/// What was read; the default where that is nothing, an absent one as the empty text.
std::string textOrDefault(OptionalText fallback, std::optional<std::string> read) noexcept {
    try {
        return read ? std::move(*read) : std::string(fallback.view());
    } catch (const std::exception&) {
        return {};
    }
}

void setFont(const GuardedOperation& operation, std::string_view methodType, OptionalText font,
             void (PageSettings::*set)(std::string) noexcept) noexcept {
    throughGate(operation, [&](World& world) {
        (world.inappPresentation.pageSettings.*set)(std::string(font.view()));
        world.reports.feed(methodType, [&] { return Dictionary{{"value", font.view()}}; });
    });
}

/// What the platform handed to the application; nested beyond the bound, it counts as nothing.
std::optional<Dictionary> acceptable(World& world, const std::optional<Dictionary>& handedOver) {
    if (!handedOver) return std::nullopt;
    for (const auto& [key, value] : *handedOver) {
        if (isWithinDepth(value, maximumValueDepth - 1)) continue;
        world.reports.note("Ignored launch options or a push: they are nested too deeply.");
        return std::nullopt;
    }
    return handedOver;
}

Dictionary acceptableOrEmpty(World& world, const std::optional<Dictionary>& handedOver) {
    return acceptable(world, handedOver).value_or(Dictionary());
}

}  // namespace

bool startOver(platform::Services services, const std::function<void(std::string_view sentence)>& refuse) noexcept {
    const auto refused = [&](std::string_view sentence) {
        refuse(sentence);
        return false;
    };
    try {
        if (const auto missing = missingService(services)) return refused(*missing);
    } catch (const std::exception& exception) {
        return refused(exception.what());
    }
    using current_world::Claim;
    const auto claim = current_world::claim();
    if (claim == Claim::started) return refused("orbinel::start: the library is already started.");
    if (claim == Claim::erasing) return refused("orbinel::start: stored data is still being erased; start again then.");
    try {
        current_world::set(World::create(std::move(services)));
        return true;
    } catch (const std::exception& exception) {
        current_world::set(nullptr);
        return refused(exception.what());
    }
}

bool start(platform::Services services) noexcept {
    const auto console = services.console;
    return startOver(std::move(services), [&](std::string_view sentence) {
        if (console != nullptr) console->writeLine(sentence);
    });
}

void shutdown() noexcept {
    const auto world = current_world::take();
    if (world != nullptr) guarded(world->reports, "orbinel::shutdown", [&] { world->end(); });
}

// --- Initialisation ---

void Orbinel::initWithLaunchOptions(const std::optional<Dictionary>& launchOptions, OptionalText partnerName,
                                    OptionalText appGroup) noexcept {
    onWorld("+[Orbinel initWithLaunchOptions:partnerName:appGroup:]", [&](World& world) {
        world.initialisation.initWithLaunchOptions(
            {acceptable(world, launchOptions), partnerName.copy(), appGroup.copy(), std::nullopt});
    });
}

void Orbinel::initWithLaunchOptions(const std::optional<Dictionary>& launchOptions, OptionalText partnerName,
                                    OptionalText appGroup, OptionalText customEndpoint) noexcept {
    onWorld("+[Orbinel initWithLaunchOptions:partnerName:appGroup:customEndpoint:]", [&](World& world) {
        world.initialisation.initWithLaunchOptions({acceptable(world, launchOptions), partnerName.copy(),
                                                    appGroup.copy(), std::optional(customEndpoint.copy())});
    });
}

void Orbinel::initSDK(OptionalText partnerName, const std::optional<Dictionary>& launchOptions) noexcept {
    onWorld("+[Orbinel initSDK:launchOptions:]",
            [&](World& world) { world.initialisation.initSDK(partnerName.copy(), acceptable(world, launchOptions)); });
}

void Orbinel::reinitWithPartnerName(OptionalText partnerName) noexcept {
    onWorld("+[Orbinel reinitWithPartnerName:]",
            [&](World& world) { world.initialisation.reinitWithPartnerName(partnerName.copy()); });
}

bool Orbinel::partnerNameIsValid(const Value& partnerName) noexcept {
    return onWorld("+[Orbinel partnerNameIsValid:]", false,
                   [&](World& world) { return world.initialisation.partnerNameIsValid(partnerName); });
}

void Orbinel::disableAutoIntegration() noexcept {
    onWorld("+[Orbinel disableAutoIntegration]", [](World& world) { world.initialisation.disableAutoIntegration(); });
}

void Orbinel::setHybridSDKVersion(OptionalText version) noexcept {
    onWorld("+[Orbinel setHybridSDKVersion:]",
            [&](World& world) { world.deviceAttributes.setHybridSDKVersion(version.copy()); });
}

void Orbinel::hybridApplicationDidBecomeActive() noexcept {
    onWorld("+[Orbinel hybridApplicationDidBecomeActive]", [](World& world) {
        world.lifecycle.hybridApplicationDidBecomeActive(world.initialisation.regularInitHasDone());
    });
}

// --- Events ---

OrbinelEvent Orbinel::tagEvent(OptionalText name) noexcept {
    const Visit<World> world(current_world::entrance());
    const bool open = world && world->helper.shouldProceed();
    return {partOf(world, &World::eventRecorder), open ? name : OptionalText(""), false};
}

void Orbinel::signUpConfirmation() noexcept {
    throughGate("+[Orbinel signUpConfirmation]", [](World& world) {
        world.eventRecorder.build(signUpEvent, std::make_shared<EventParameters>());
        world.reports.feed("signUpConfirmation", [] { return Dictionary{{"value", "User sign up event sent"}}; });
    });
}

OrbinelEvent::OrbinelEvent(OptionalText name) noexcept
    : OrbinelEvent(partOf(Visit<World>(current_world::entrance()), &World::eventRecorder), name, false) {}

// --- Consent and collection ---

void Orbinel::setGDPRConsent(bool consent) noexcept {
    onWorld("+[Orbinel setGDPRConsent:]", [&](World& world) { world.privacy.setGDPRConsent(consent); });
}

void Orbinel::setMobileGDPRConsent(bool consent) noexcept {
    onWorld("+[Orbinel setMobileGDPRConsent:]", [&](World& world) { world.privacy.setMobileGDPRConsent(consent); });
}

void Orbinel::enableIDFACollection(bool enabled) noexcept {
    onWorld("+[Orbinel enableIDFACollection:]",
            [&](World& world) { world.collectionSwitches.enableIDFACollection(enabled); });
}

void Orbinel::enableIpCollection(bool enabled) noexcept {
    onWorld("+[Orbinel enableIpCollection:]",
            [&](World& world) { world.collectionSwitches.enableIpCollection(enabled); });
}

void Orbinel::enableLocationCollection(bool enabled) noexcept {
    onWorld("+[Orbinel enableLocationCollection:]",
            [&](World& world) { world.collectionSwitches.enableLocationCollection(enabled); });
}

void Orbinel::enableCarrierCollection(bool enabled) noexcept {
    onWorld("+[Orbinel enableCarrierCollection:]",
            [&](World& world) { world.collectionSwitches.enableCarrierCollection(enabled); });
}

void Orbinel::eraseStoredData() noexcept { eraseStoredDataWithCompletionHandler({}); }

void Orbinel::eraseStoredDataWithCompletionHandler(
    std::function<void(const std::optional<std::string>& problem)> completion) noexcept {
    orbinel::eraseStoredData(std::move(completion));
}

// --- The user ---

OrbinelUser Orbinel::getCurrentUser() noexcept {
    const Visit<World> world(current_world::entrance());
    if (world) {
        guarded(world->reports, "+[Orbinel getCurrentUser]", [&] {
            if (world->helper.shouldProceed()) world->userAttributes.initUser();
        });
    }
    return OrbinelUser(partOf(world, &World::userAccess));
}

OrbinelIdentifiers::OrbinelIdentifiers() noexcept
    : OrbinelIdentifiers(partOf(Visit<World>(current_world::entrance()), &World::userAccess)) {}

std::optional<std::string> Orbinel::getOrbinelID() noexcept {
    return throughGate("+[Orbinel getOrbinelID]", std::optional<std::string>(),
                       [](World& world) { return world.identity.getOrbinelID(); });
}

void Orbinel::setIdListener(TargetAction<const std::string&> listener) noexcept {
    throughGate("+[Orbinel registerOrbinelIDListenerWithSelector:sender:]",
                [&](World& world) { world.idListeners.registerOrbinelIDListener(std::move(listener)); });
}

// --- Products, cart, wishlist and pages: their owners ask the gate, except where a message on screen has to go first
// ---

OrbinelProduct Orbinel::createNewProductWithID(OptionalText productID, OptionalText name, const Array& taxonomy,
                                               OptionalText imageURL, double price, OptionalText currency) noexcept {
    return onWorld(
        "+[Orbinel createNewProductWithID:name:taxonomy:imageURL:price:currency:]", OrbinelProduct(),
        [&](World& world) {
            return world.productCreation.createNewProductWithID({productID, name, taxonomy, imageURL, price, currency});
        });
}

void Orbinel::visitHomepage() noexcept {
    throughGate("+[Orbinel visitHomepage]", [](World& world) {
        world.inappPresentation.removeInappOnProductPage();
        world.pageVisits.visitHomepage();
    });
}

void Orbinel::visitListingPageWithTaxonomy(const Array& taxonomy) noexcept {
    throughGate("+[Orbinel visitListingPageWithTaxonomy:]", [&](World& world) {
        world.inappPresentation.removeInappOnProductPage();
        world.pageVisits.visitListingPage(taxonomy);
    });
}

void Orbinel::visitProductDetailPageWithProduct(const OrbinelProduct& product) noexcept {
    throughGate("+[Orbinel visitProductDetailPageWithProduct:]", [&](World& world) {
        world.inappPresentation.removeInappOnProductPage();
        world.pageVisits.visitProductDetailPage(product);
    });
}

void Orbinel::visitCartPageWithProducts(const std::vector<OrbinelProduct>& products) noexcept {
    throughGate("+[Orbinel visitCartPageWithProducts:]", [&](World& world) {
        world.inappPresentation.removeInappOnProductPage();
        world.pageVisits.visitCartPage(products);
    });
}

void Orbinel::visitWishlistWithProducts(const std::vector<OrbinelProduct>& products) noexcept {
    throughGate("+[Orbinel visitWishlistWithProducts:]", [&](World& world) {
        world.inappPresentation.removeInappOnProductPage();
        world.wishlist.visitWishlist(products);
    });
}

void Orbinel::itemAddedToCartWithProduct(const OrbinelProduct& product) noexcept {
    onWorld("+[Orbinel itemAddedToCartWithProduct:]",
            [&](World& world) { world.cartReminder.itemAddedToCart(product); });
}

void Orbinel::itemRemovedFromCartWithProductID(OptionalText productID) noexcept {
    onWorld("+[Orbinel itemRemovedFromCartWithProductID:]",
            [&](World& world) { world.cartReminder.itemRemovedFromCart(productID); });
}

void Orbinel::cartCleared() noexcept {
    onWorld("+[Orbinel cartCleared]", [](World& world) { world.cartReminder.cartCleared(); });
}

void Orbinel::itemPurchasedWithSaleID(OptionalText saleID, const OrbinelProduct& product) noexcept {
    onWorld("+[Orbinel itemPurchasedWithSaleID:product:]",
            [&](World& world) { world.cartReminder.itemPurchased(saleID, product); });
}

void Orbinel::itemAddedToWishlistWithProduct(const OrbinelProduct& product) noexcept {
    onWorld("+[Orbinel itemAddedToWishlistWithProduct:]",
            [&](World& world) { world.wishlist.itemAddedToWishlist(product); });
}

void Orbinel::itemRemovedFromWishlistWithProductID(OptionalText productID) noexcept {
    onWorld("+[Orbinel itemRemovedFromWishlistWithProductID:]",
            [&](World& world) { world.wishlist.itemRemovedFromWishlist(productID); });
}

void Orbinel::wishlistCleared() noexcept {
    onWorld("+[Orbinel wishlistCleared]", [](World& world) { world.wishlist.wishlistCleared(); });
}

// --- Remote content: its owner asks the gate ---

std::string Orbinel::getContentStringWithName(OptionalText name, OptionalText defaultString,
                                              OrbinelVariableType dataType) noexcept {
    return textOrDefault(
        defaultString,
        onWorld("+[Orbinel getContentStringWithName:defaultString:dataType:]", std::optional<std::string>(),
                [&](World& world) { return world.contentOptimizer.getStringWithName(name, defaultString, dataType); }));
}

bool Orbinel::getContentBoolWithName(OptionalText name, bool defaultBool, OrbinelVariableType dataType) noexcept {
    return onWorld("+[Orbinel getContentBoolWithName:defaultBool:dataType:]", defaultBool,
                   [&](World& world) { return world.contentOptimizer.getBoolWithName(name, defaultBool, dataType); });
}

std::int32_t Orbinel::getContentIntWithName(OptionalText name, std::int32_t defaultInt,
                                            OrbinelVariableType dataType) noexcept {
    return onWorld("+[Orbinel getContentIntWithName:defaultInt:dataType:]", defaultInt,
                   [&](World& world) { return world.contentOptimizer.getIntWithName(name, defaultInt, dataType); });
}

std::string Orbinel::getContentStringWithoutCache(OptionalText name, OptionalText defaultString,
                                                  OrbinelVariableType dataType) noexcept {
    return textOrDefault(defaultString, onWorld("+[Orbinel getContentStringWithoutCache:defaultString:dataType:]",
                                                std::optional<std::string>(), [&](World& world) {
                                                    return world.contentOptimizer.getStringFromSessionVariablesWithName(
                                                        name, defaultString, dataType);
                                                }));
}

bool Orbinel::getContentBoolWithoutCache(OptionalText name, bool defaultBool, OrbinelVariableType dataType) noexcept {
    return onWorld("+[Orbinel getContentBoolWithoutCache:defaultBool:dataType:]", defaultBool, [&](World& world) {
        return world.contentOptimizer.getBoolFromSessionVariablesWithName(name, defaultBool, dataType);
    });
}

std::int32_t Orbinel::getContentIntWithoutCache(OptionalText name, std::int32_t defaultInt,
                                                OrbinelVariableType dataType) noexcept {
    return onWorld("+[Orbinel getContentIntWithoutCache:defaultInt:dataType:]", defaultInt, [&](World& world) {
        return world.contentOptimizer.getIntFromSessionVariablesWithName(name, defaultInt, dataType);
    });
}

void Orbinel::removeTestVariables() noexcept {
    onWorld("+[Orbinel removeTestVariables]", [](World& world) { world.contentOptimizer.removeTestVariables(); });
}

// --- Recommendations: their owners ask the gate ---

void Orbinel::getSmartRecommendationWithID(std::int32_t recommendationID, OptionalText locale, OptionalText currency,
                                           std::function<void(const Dictionary&)> smartRecommendation) noexcept {
    onWorld("+[Orbinel getSmartRecommendationWithID:locale:currency:smartRecommendation:]", [&](World& world) {
        world.recommendations.getSmartRecommendationWithID(recommendationID, locale, currency,
                                                           std::move(smartRecommendation));
    });
}

void Orbinel::getSmartRecommendationWithProduct(const OrbinelProduct& product, std::int32_t recommendationID,
                                                OptionalText locale,
                                                std::function<void(const Dictionary&)> smartRecommendation) noexcept {
    onWorld("+[Orbinel getSmartRecommendationWithProduct:recommendationID:locale:smartRecommendation:]",
            [&](World& world) {
                world.recommendations.getSmartRecommendationWithProduct(product, recommendationID, locale,
                                                                        std::move(smartRecommendation));
            });
}

void Orbinel::getSmartRecommendationWithProductIDs(
    const Array& productIDs, std::int32_t recommendationID, OptionalText locale, OptionalText currency,
    std::function<void(const Dictionary&)> smartRecommendation) noexcept {
    onWorld("+[Orbinel getSmartRecommendationWithProductIDs:recommendationID:locale:currency:smartRecommendation:]",
            [&](World& world) {
                world.recommendations.getSmartRecommendationWithProductIDs(productIDs, recommendationID, locale,
                                                                           currency, std::move(smartRecommendation));
            });
}

void Orbinel::clickSmartRecommendationProductWithID(std::int32_t recommendationID,
                                                    const OrbinelProduct& product) noexcept {
    onWorld("+[Orbinel clickSmartRecommendationProductWithID:product:]", [&](World& world) {
        world.recommendationLogger.clickSmartRecommendationProductWithID(recommendationID, product);
    });
}

// --- Message center ---

void Orbinel::getMessageCenterDataWithLimit(std::int32_t limit, std::optional<Date> startDate,
                                            std::optional<Date> endDate,
                                            std::function<void(const Array&)> success) noexcept {
    onWorld("+[Orbinel getMessageCenterDataWithLimit:startDate:endDate:success:]", [&](World& world) {
        world.messageCenter.getMessageCenterData(limit, startDate, endDate, std::move(success));
    });
}

// --- In-app messages ---

void Orbinel::removeInapp() noexcept {
    throughGate("+[Orbinel removeInapp]",
                [](World& world) { world.inappPresentation.removeInappWithCompletionHandler({}); });
}

void Orbinel::removeInappWithCompletionHandler(std::function<void()> completion) noexcept {
    onWorld("+[Orbinel removeInappWithCompletionHandler:]",
            [&](World& world) { world.inappPresentation.removeInappWithCompletionHandler(std::move(completion)); });
}

void Orbinel::enableInAppMessages() noexcept {
    onWorld("+[Orbinel enableInAppMessages]", [](World& world) { world.inappPresentation.enableInAppMessages(); });
}

void Orbinel::disableInAppMessages() noexcept {
    onWorld("+[Orbinel disableInAppMessages]", [](World& world) { world.inappPresentation.disableInAppMessages(); });
}

void Orbinel::reenableTemplates() noexcept {
    onWorld("+[Orbinel reenableTemplates]", [](World& world) { world.inappPresentation.reenableTemplates(); });
}

void Orbinel::disableTemplates() noexcept {
    onWorld("+[Orbinel disableTemplates]", [](World& world) { world.inappPresentation.disableTemplates(); });
}

void Orbinel::enableTemplateDebugging() noexcept {
    onWorld("+[Orbinel enableTemplateDebugging]",
            [](World& world) { world.inappPresentation.pageSettings.setDebuggingEnabled(true); });
}

void Orbinel::setCustomRegularFont(OptionalText font) noexcept {
    setFont("+[Orbinel setCustomRegularFont:]", "setCustomRegularFont", font, &PageSettings::setCustomRegularFont);
}

void Orbinel::setCustomBoldFont(OptionalText font) noexcept {
    setFont("+[Orbinel setCustomBoldFont:]", "setCustomBoldFont", font, &PageSettings::setCustomBoldFont);
}

void Orbinel::setCustomItalicFont(OptionalText font) noexcept {
    setFont("+[Orbinel setCustomItalicFont:]", "setCustomItalicFont", font, &PageSettings::setCustomItalicFont);
}

void Orbinel::showTestInapp(const Dictionary& inapp, const Dictionary& pushInfo) noexcept {
    onWorld("+[Orbinel showTestInapp:pushInfo:]",
            [&](World& world) { world.campaignSelection.showTestInapp(inapp, pushInfo); });
}

void Orbinel::showNativeAppReview() noexcept {
    onWorld("+[Orbinel showNativeAppReview]", [](World& world) { world.nativeActions.showNativeAppReview(); });
}

void Orbinel::registerWithQuietPermission(bool quiet) noexcept {
    onWorld("+[Orbinel registerWithQuietPermission:]",
            [&](World& world) { world.pushPermission.registerWithQuietPermission(quiet); });
}

void Orbinel::registerDeviceTokenWithApplication(const platform::Application*,
                                                 std::span<const std::uint8_t> deviceToken) noexcept {
    onWorld("+[Orbinel registerDeviceTokenWithApplication:deviceToken:]",
            [&](World& world) { world.deviceToken.registerDeviceToken(deviceToken); });
}

void Orbinel::setPushToken(OptionalText token) noexcept {
    onWorld("+[Orbinel setPushToken:]", [&](World& world) { world.deviceToken.setPushToken(token.view()); });
}

void Orbinel::handlePushLogWithUserInfo(const std::optional<Dictionary>& userInfo) noexcept {
    onWorld("+[Orbinel handlePushLogWithUserInfo:]",
            [&](World& world) { world.push.handlePushLogWithUserInfo(acceptableOrEmpty(world, userInfo)); });
}

void Orbinel::triggerPushProcessWithUserInfo(const std::optional<Dictionary>& userInfo) noexcept {
    onWorld("+[Orbinel triggerPushProcessWithUserInfo:]",
            [&](World& world) { world.push.handlePushLogWithUserInfo(acceptableOrEmpty(world, userInfo)); });
}

void Orbinel::setPushActionWithPushInfo(const std::optional<Dictionary>& pushInfo) noexcept {
    onWorld("+[Orbinel setPushActionWithPushInfo:]",
            [&](World& world) { world.push.setPushActionWithPushInfo(acceptableOrEmpty(world, pushInfo)); });
}

std::optional<Dictionary> Orbinel::getPushInfo(const std::optional<Dictionary>& userInfo) noexcept {
    return onWorld("+[Orbinel getPushInfo:]", std::optional<Dictionary>(),
                   [&](World& world) { return orbinel::getPushInfo(acceptableOrEmpty(world, userInfo)); });
}

void Orbinel::trackInteractiveLogWithUserInfo(const std::optional<Dictionary>& userInfo) noexcept {
    onWorld("+[Orbinel trackInteractiveLogWithUserInfo:]",
            [&](World& world) { world.pushLog.trackInteractiveLogWithUserInfo(acceptableOrEmpty(world, userInfo)); });
}

void Orbinel::setForegroundCallback(TargetAction<const Dictionary&> callback) noexcept {
    onWorld("+[Orbinel setForegroundPushCallback:sender:]",
            [&](World& world) { world.push.setForegroundPushCallback(std::move(callback)); });
}

void Orbinel::setActiveForegroundPushView() noexcept {
    onWorld("+[Orbinel setActiveForegroundPushView]", [](World& world) { world.push.setActiveForegroundPushView(); });
}

// --- Links ---

void Orbinel::handleUniversalLink(const UserActivity& activity) noexcept {
    onWorld("+[Orbinel handleUniversalLink:]",
            [&](World& world) { world.universalLinks.handleUniversalLink(activity); });
}

// --- Testing one's integration ---

void Orbinel::handleUrl(OptionalText url) noexcept {
    onWorld("+[Orbinel handleUrl:]", [&](World& world) { world.toolLinks.handleUrl(url.view()); });
}

// --- Callbacks ---

void Orbinel::setCallback(TargetAction<const Dictionary&> callback) noexcept {
    onWorld("+[Orbinel registerOrbinelCallbackWithSelector:sender:]", [&](World& world) {
        world.inappButtons.setInappButtonClickCallback(callback);
        world.templateStore.setTemplateStoreCallback(callback);
        world.inappPresentation.setInappSeenCallback(callback);
        world.push.setPushCallback(callback);
        world.sessionStart.setSessionStartedCallback(std::move(callback));
        world.reports.feedToPanel("registerOrbinelCallback", [] { return Dictionary(); });
    });
}

// --- Diagnosis ---

void Orbinel::sendError(OptionalText error, OptionalText desc) noexcept {
    onWorld("+[Orbinel sendError:desc:]", [&](World& world) { world.reports.sendError(error.view(), desc.view()); });
}

std::string Orbinel::getSDKVersion() noexcept {
    return onWorld("+[Orbinel getSDKVersion]", std::string(ORBINEL_VERSION),
                   [](World& world) { return world.deviceAttributes.getSDKVersion(); });
}

void Orbinel::setDevelopmentLog(bool on) noexcept {
    onWorld("+[Orbinel setDevelopmentLog:]", [&](World& world) { world.reports.setDevelopmentLog(on); });
}

}  // namespace orbinel
