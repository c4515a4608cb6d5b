#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "apps/orbinel/play/binding.hpp"
#include "apps/orbinel/play/fields.hpp"
#include "apps/orbinel/play/operation.hpp"
#include "orbinel/orbinel.hpp"

namespace orbinel::tool {

namespace {

using LaunchOptions = std::optional<Dictionary>;
using InitWithGroup = void (*)(const LaunchOptions&, OptionalText, OptionalText) noexcept;
using InitWithEndpoint = void (*)(const LaunchOptions&, OptionalText, OptionalText, OptionalText) noexcept;

constexpr auto registerIdListener = [](auto selector, std::weak_ptr<Target> target) {
    Orbinel::registerOrbinelIDListenerWithSelector(selector, target);
};
constexpr auto registerCallback = [](auto selector, std::weak_ptr<Target> target) {
    Orbinel::registerOrbinelCallbackWithSelector(selector, target);
};

constexpr auto setForegroundPushCallback = [](auto callback, std::weak_ptr<Target> target) {
    Orbinel::setForegroundPushCallback(callback, target);
};

std::vector<Operation> facadeOperations() {
    return {
        facade("initWithLaunchOptions:partnerName:appGroup:", InitWithGroup(&Orbinel::initWithLaunchOptions)),
        facade("initWithLaunchOptions:partnerName:appGroup:customEndpoint:",
               InitWithEndpoint(&Orbinel::initWithLaunchOptions)),
        facade("initSDK:launchOptions:", &Orbinel::initSDK),
        facade("reinitWithPartnerName:", &Orbinel::reinitWithPartnerName),
        facade("partnerNameIsValid:", &Orbinel::partnerNameIsValid),
        facade("disableAutoIntegration", &Orbinel::disableAutoIntegration),
        facade("setHybridSDKVersion:", &Orbinel::setHybridSDKVersion),
        facade("hybridApplicationDidBecomeActive", &Orbinel::hybridApplicationDidBecomeActive),
        facade("tagEvent:", &Orbinel::tagEvent),
        facade("signUpConfirmation", &Orbinel::signUpConfirmation),
        facade("setGDPRConsent:", &Orbinel::setGDPRConsent),
        facade("setMobileGDPRConsent:", &Orbinel::setMobileGDPRConsent),
        facade("enableIDFACollection:", &Orbinel::enableIDFACollection),
        facade("enableIpCollection:", &Orbinel::enableIpCollection),
        facade("enableLocationCollection:", &Orbinel::enableLocationCollection),
        facade("enableCarrierCollection:", &Orbinel::enableCarrierCollection),
        facade("getCurrentUser", &Orbinel::getCurrentUser),
        facade("getOrbinelID", &Orbinel::getOrbinelID),
        registration<std::string>("registerOrbinelIDListenerWithSelector:sender:", registerIdListener),
        registration<Dictionary>("registerOrbinelCallbackWithSelector:sender:", registerCallback),
        facade("createNewProductWithID:name:taxonomy:imageURL:price:currency:", &Orbinel::createNewProductWithID),
        facade("visitHomepage", &Orbinel::visitHomepage),
        facade("visitListingPageWithTaxonomy:", &Orbinel::visitListingPageWithTaxonomy),
        facade("visitProductDetailPageWithProduct:", &Orbinel::visitProductDetailPageWithProduct),
        facade("visitCartPageWithProducts:", &Orbinel::visitCartPageWithProducts),
        facade("visitWishlistWithProducts:", &Orbinel::visitWishlistWithProducts),
        facade("itemAddedToCartWithProduct:", &Orbinel::itemAddedToCartWithProduct),
        facade("itemRemovedFromCartWithProductID:", &Orbinel::itemRemovedFromCartWithProductID),
        facade("cartCleared", &Orbinel::cartCleared),
        facade("itemPurchasedWithSaleID:product:", &Orbinel::itemPurchasedWithSaleID),
        facade("itemAddedToWishlistWithProduct:", &Orbinel::itemAddedToWishlistWithProduct),
        facade("itemRemovedFromWishlistWithProductID:", &Orbinel::itemRemovedFromWishlistWithProductID),
        facade("wishlistCleared", &Orbinel::wishlistCleared),
        facade("getContentStringWithName:defaultString:dataType:", &Orbinel::getContentStringWithName),
        facade("getContentBoolWithName:defaultBool:dataType:", &Orbinel::getContentBoolWithName),
        facade("getContentIntWithName:defaultInt:dataType:", &Orbinel::getContentIntWithName),
        facade("getContentStringWithoutCache:defaultString:dataType:", &Orbinel::getContentStringWithoutCache),
        facade("getContentBoolWithoutCache:defaultBool:dataType:", &Orbinel::getContentBoolWithoutCache),
        facade("getContentIntWithoutCache:defaultInt:dataType:", &Orbinel::getContentIntWithoutCache),
        facade("removeInapp", &Orbinel::removeInapp),
        facade("removeInappWithCompletionHandler:", &Orbinel::removeInappWithCompletionHandler),
        facade("enableInAppMessages", &Orbinel::enableInAppMessages),
        facade("disableInAppMessages", &Orbinel::disableInAppMessages),
        facade("reenableTemplates", &Orbinel::reenableTemplates),
        facade("disableTemplates", &Orbinel::disableTemplates),
        facade("enableTemplateDebugging", &Orbinel::enableTemplateDebugging),
        facade("setCustomRegularFont:", &Orbinel::setCustomRegularFont),
        facade("setCustomBoldFont:", &Orbinel::setCustomBoldFont),
        facade("setCustomItalicFont:", &Orbinel::setCustomItalicFont),
        facade("showTestInapp:pushInfo:", &Orbinel::showTestInapp),
        facade("showNativeAppReview", &Orbinel::showNativeAppReview),
        facade("registerWithQuietPermission:", &Orbinel::registerWithQuietPermission),
        facade("registerDeviceTokenWithApplication:deviceToken:", &Orbinel::registerDeviceTokenWithApplication),
        facade("setPushToken:", &Orbinel::setPushToken),
        facade("handlePushLogWithUserInfo:", &Orbinel::handlePushLogWithUserInfo),
        facade("triggerPushProcessWithUserInfo:", &Orbinel::triggerPushProcessWithUserInfo),
        facade("setPushActionWithPushInfo:", &Orbinel::setPushActionWithPushInfo),
        facade("getPushInfo:", &Orbinel::getPushInfo),
        facade("trackInteractiveLogWithUserInfo:", &Orbinel::trackInteractiveLogWithUserInfo),
        registration<Dictionary>("setForegroundPushCallback:sender:", setForegroundPushCallback),
        facade("setActiveForegroundPushView", &Orbinel::setActiveForegroundPushView),
        facade("handleUniversalLink:", &Orbinel::handleUniversalLink),
        facade("removeTestVariables", &Orbinel::removeTestVariables),
        facade("getSmartRecommendationWithID:locale:currency:smartRecommendation:",
               &Orbinel::getSmartRecommendationWithID),
        facade("getSmartRecommendationWithProduct:recommendationID:locale:smartRecommendation:",
               &Orbinel::getSmartRecommendationWithProduct),
        facade("getSmartRecommendationWithProductIDs:recommendationID:locale:currency:smartRecommendation:",
               &Orbinel::getSmartRecommendationWithProductIDs),
        facade("clickSmartRecommendationProductWithID:product:", &Orbinel::clickSmartRecommendationProductWithID),
        facade("getMessageCenterDataWithLimit:startDate:endDate:success:", &Orbinel::getMessageCenterDataWithLimit),
        facade("handleUrl:", &Orbinel::handleUrl),
        facade("sendError:desc:", &Orbinel::sendError),
        facade("getSDKVersion", &Orbinel::getSDKVersion),
        facade("eraseStoredData", &Orbinel::eraseStoredData),
        facade("eraseStoredDataWithCompletionHandler:", &Orbinel::eraseStoredDataWithCompletionHandler),
        facade("setDevelopmentLog:", &Orbinel::setDevelopmentLog),
        maker<OrbinelIdentifiers>("new:OrbinelIdentifiers", ThingKind::identifiers),
        maker<Target>("new:Target", ThingKind::target),
    };
}

std::vector<Operation> eventOperations() {
    return {
        chained("addParameterWithString", &OrbinelEvent::addParameterWithString),
        chained("addParameterWithInt", &OrbinelEvent::addParameterWithInt),
        chained("addParameterWithDouble", &OrbinelEvent::addParameterWithDouble),
        chained("addParameterWithBoolean", &OrbinelEvent::addParameterWithBoolean),
        chained("addParameterWithDate", &OrbinelEvent::addParameterWithDate),
        chained("addParameterWithArray", &OrbinelEvent::addParameterWithArray),
        chained("addParameters", &OrbinelEvent::addParameters),
        method("build", &OrbinelEvent::build),
        method("getName", &OrbinelEvent::getName),
        method("getParameters", &OrbinelEvent::getParameters),
        method("isInternal", &OrbinelEvent::isInternal),
    };
}

std::vector<Operation> userOperations() {
    using GenderByCode = OrbinelUser& (OrbinelUser::*)(std::int32_t)& noexcept;
    using Login = void (OrbinelUser::*)(const OrbinelIdentifiers&) const noexcept;
    using LoginWithResult =
        void (OrbinelUser::*)(const OrbinelIdentifiers&, std::function<void(const std::string&)>) const noexcept;
    return {
        chained("setName", &OrbinelUser::setName),
        chained("setSurname", &OrbinelUser::setSurname),
        chained("setLanguage", &OrbinelUser::setLanguage),
        chained("setLocale", &OrbinelUser::setLocale),
        chained("setFacebookID", &OrbinelUser::setFacebookID),
        chained("setTwitterID", &OrbinelUser::setTwitterID),
        chained("setGender", GenderByCode(&OrbinelUser::setGender)),
        chained("setBirthday", &OrbinelUser::setBirthday),
        chained("setAge", &OrbinelUser::setAge),
        chained("setEmail", &OrbinelUser::setEmail),
        chained("setPhoneNumber", &OrbinelUser::setPhoneNumber),
        chained("setEmailOptin", &OrbinelUser::setEmailOptin),
        chained("setSMSOptin", &OrbinelUser::setSMSOptin),
        chained("setWhatsappOptin", &OrbinelUser::setWhatsappOptin),
        chained("setPushOptin", &OrbinelUser::setPushOptin),
        chained("setLocationOptin", &OrbinelUser::setLocationOptin),
        chained("setCustomAttributeWithString", &OrbinelUser::setCustomAttributeWithString),
        chained("setCustomAttributeWithInt", &OrbinelUser::setCustomAttributeWithInt),
        chained("setCustomAttributeWithDouble", &OrbinelUser::setCustomAttributeWithDouble),
        chained("setCustomAttributeWithBoolean", &OrbinelUser::setCustomAttributeWithBoolean),
        chained("setCustomAttributeWithDate", &OrbinelUser::setCustomAttributeWithDate),
        chained("setCustomAttributeWithArray", &OrbinelUser::setCustomAttributeWithArray),
        chained("unsetCustomAttribute", &OrbinelUser::unsetCustomAttribute),
        method("login:", Login(&OrbinelUser::login)),
        method("login:orbinelIDResult:", LoginWithResult(&OrbinelUser::login)),
        method("logout", &OrbinelUser::logout),
        method("areIdentifiersAlreadyCached:", &OrbinelUser::areIdentifiersAlreadyCached),
    };
}

std::vector<Operation> identifiersOperations() {
    return {
        chained("addEmail", &OrbinelIdentifiers::addEmail),
        chained("addPhoneNumber", &OrbinelIdentifiers::addPhoneNumber),
        chained("addUserID", &OrbinelIdentifiers::addUserID),
        chained("addCustomIdentifier", &OrbinelIdentifiers::addCustomIdentifier),
        method("getOrbinelIdentifiers", &OrbinelIdentifiers::getOrbinelIdentifiers),
    };
}

std::vector<Operation> productOperations() {
    return {
        chained("setSaleID", &OrbinelProduct::setSaleID),
        chained("setProductID", &OrbinelProduct::setProductID),
        chained("setName", &OrbinelProduct::setName),
        chained("setTaxonomy", &OrbinelProduct::setTaxonomy),
        chained("setProductImageURL", &OrbinelProduct::setProductImageURL),
        chained("setUnitPrice", &OrbinelProduct::setUnitPrice),
        chained("setSalePrice", &OrbinelProduct::setSalePrice),
        chained("setCurrency", &OrbinelProduct::setCurrency),
        chained("setStock", &OrbinelProduct::setStock),
        chained("setInStock", &OrbinelProduct::setInStock),
        chained("setQuantity", &OrbinelProduct::setQuantity),
        chained("setColor", &OrbinelProduct::setColor),
        chained("setSize", &OrbinelProduct::setSize),
        chained("setShippingCost", &OrbinelProduct::setShippingCost),
        chained("setVoucherName", &OrbinelProduct::setVoucherName),
        chained("setVoucherDiscount", &OrbinelProduct::setVoucherDiscount),
        chained("setPromotionName", &OrbinelProduct::setPromotionName),
        chained("setPromotionDiscount", &OrbinelProduct::setPromotionDiscount),
        chained("setGroupCode", &OrbinelProduct::setGroupCode),
        chained("setCustomAttributeWithString", &OrbinelProduct::setCustomAttributeWithString),
        chained("setCustomAttributeWithInt", &OrbinelProduct::setCustomAttributeWithInt),
        chained("setCustomAttributeWithDouble", &OrbinelProduct::setCustomAttributeWithDouble),
        chained("setCustomAttributeWithBoolean", &OrbinelProduct::setCustomAttributeWithBoolean),
        chained("setCustomAttributeWithDate", &OrbinelProduct::setCustomAttributeWithDate),
        chained("setCustomAttributeWithArray", &OrbinelProduct::setCustomAttributeWithArray),
        method("isProductValid", &OrbinelProduct::isProductValid),
        method("getProductControlSuccess", &OrbinelProduct::getProductControlSuccess),
        method("getProductSummary", &OrbinelProduct::getProductSummary),
        method("getProductID", &OrbinelProduct::getProductID),
        method("getName", &OrbinelProduct::getName),
        method("getTaxonomy", &OrbinelProduct::getTaxonomy),
        method("getImageURL", &OrbinelProduct::getImageURL),
        method("getCurrency", &OrbinelProduct::getCurrency),
        method("getGroupCode", &OrbinelProduct::getGroupCode),
        method("getUnitPrice", &OrbinelProduct::getUnitPrice),
        method("getQuantity", &OrbinelProduct::getQuantity),
        method("getCustomAttributeString:", &OrbinelProduct::getCustomAttributeString),
        method("getCustomAttributeInt:", &OrbinelProduct::getCustomAttributeInt),
        method("getCustomAttributeDouble:", &OrbinelProduct::getCustomAttributeDouble),
        method("getCustomAttributeBoolean:", &OrbinelProduct::getCustomAttributeBoolean),
        method("getCustomAttributeDate:", &OrbinelProduct::getCustomAttributeDate),
        method("getCustomAttributeArray:", &OrbinelProduct::getCustomAttributeArray),
    };
}

const std::vector<Operation>& operationsOf(ThingKind receiver) {
    static const std::vector<Operation> none;
    static const auto ofFacade = facadeOperations();
    static const auto ofEvent = eventOperations();
    static const auto ofUser = userOperations();
    static const auto ofIdentifiers = identifiersOperations();
    static const auto ofProduct = productOperations();
    switch (receiver) {
        case ThingKind::nothing:
            return ofFacade;
        case ThingKind::event:
            return ofEvent;
        case ThingKind::user:
            return ofUser;
        case ThingKind::identifiers:
            return ofIdentifiers;
        case ThingKind::product:
            return ofProduct;
        default:
            return none;
    }
}

}  // namespace

std::string_view inWords(ThingKind kind) {
    switch (kind) {
        case ThingKind::nothing:
            return "nothing";
        case ThingKind::text:
            return "a text";
        case ThingKind::boolean:
            return "a boolean";
        case ThingKind::number:
            return "a number";
        case ThingKind::array:
            return "a list";
        case ThingKind::dictionary:
            return "a dictionary";
        case ThingKind::event:
            return "an event";
        case ThingKind::user:
            return "a user";
        case ThingKind::identifiers:
            return "identifiers";
        case ThingKind::product:
            return "a product";
        case ThingKind::target:
            return "a target";
    }
    return "a thing";
}

const Operation& findOperation(std::string_view name, ThingKind receiver) {
    const auto& candidates = operationsOf(receiver);
    const auto found = std::find_if(candidates.begin(), candidates.end(),
                                    [&](const Operation& operation) { return operation.name == name; });
    if (found != candidates.end()) return *found;
    const auto owner = receiver == ThingKind::nothing ? std::string() : " of " + std::string(inWords(receiver));
    throw Unusable("there is no operation " + inQuotes(name) + owner);
}

}  // namespace orbinel::tool
