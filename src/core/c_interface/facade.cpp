#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "core/c_interface/callbacks.hpp"
#include "core/c_interface/dates.hpp"
#include "core/c_interface/handles.hpp"
#include "core/c_interface/json.hpp"
#include "orbinel/orbinel.hpp"

using namespace orbinel;
using namespace orbinel::c_interface;

static_assert(ORBINEL_VARIABLE_TYPE_CONTENT == OrbinelVariableTypeContent);
static_assert(ORBINEL_VARIABLE_TYPE_ELEMENT == OrbinelVariableTypeElement);
static_assert(std::string_view(ORBINEL_BROWSING_WEB_ACTIVITY_TYPE) == browsingWebActivityType);
static_assert(std::string_view(ORBINEL_LAUNCH_OPTIONS_REMOTE_NOTIFICATION_KEY) == launchOptionsRemoteNotificationKey);

namespace {

OrbinelVariableType variableType(std::int32_t number) noexcept { return static_cast<OrbinelVariableType>(number); }

/// A product that is not there is one that is not valid.
const OrbinelProduct& orInvalid(const orbinel_product* product) noexcept {
    static const OrbinelProduct& invalid = *new OrbinelProduct();  // a program may call while it is torn down
    return product != nullptr ? product->object : invalid;
}

std::vector<OrbinelProduct> productsOf(const orbinel_product* const* products, std::size_t count) {
    std::vector<OrbinelProduct> result;
    if (products == nullptr) return result;
    result.reserve(count);
    for (std::size_t i = 0; i < count; ++i) result.push_back(orInvalid(products[i]));
    return result;
}

}  // namespace

void orbinel_shutdown(void) {
    run(__func__, [] { shutdown(); });
}

// --- Initialisation ---

void orbinel_init_with_launch_options(const char* launch_options, const char* partner_name, const char* app_group) {
    run(__func__, [&] {
        Orbinel::initWithLaunchOptions(optionalDictionaryOf("launch_options", launch_options), partner_name, app_group);
    });
}

void orbinel_init_with_launch_options_custom_endpoint(const char* launch_options, const char* partner_name,
                                                      const char* app_group, const char* custom_endpoint) {
    run(__func__, [&] {
        Orbinel::initWithLaunchOptions(optionalDictionaryOf("launch_options", launch_options), partner_name, app_group,
                                       custom_endpoint);
    });
}

void orbinel_init_sdk(const char* partner_name, const char* launch_options) {
    run(__func__, [&] { Orbinel::initSDK(partner_name, optionalDictionaryOf("launch_options", launch_options)); });
}

void orbinel_reinit_with_partner_name(const char* partner_name) {
    run(__func__, [&] { Orbinel::reinitWithPartnerName(partner_name); });
}

bool orbinel_partner_name_is_valid(const char* partner_name) {
    return run(__func__, false,
               [&] { return Orbinel::partnerNameIsValid(partner_name != nullptr ? Value(partner_name) : Value()); });
}

void orbinel_disable_auto_integration(void) {
    run(__func__, [] { Orbinel::disableAutoIntegration(); });
}

void orbinel_set_hybrid_sdk_version(const char* version) {
    run(__func__, [&] { Orbinel::setHybridSDKVersion(version); });
}

void orbinel_hybrid_application_did_become_active(void) {
    run(__func__, [] { Orbinel::hybridApplicationDidBecomeActive(); });
}

// --- Events ---

orbinel_event* orbinel_tag_event(const char* name) {
    forgetError();
    return newHandle<orbinel_event>(Orbinel::tagEvent(name));
}

void orbinel_sign_up_confirmation(void) {
    run(__func__, [] { Orbinel::signUpConfirmation(); });
}

// --- Consent and collection ---

void orbinel_set_gdpr_consent(bool consent) {
    run(__func__, [&] { Orbinel::setGDPRConsent(consent); });
}

void orbinel_set_mobile_gdpr_consent(bool consent) {
    run(__func__, [&] { Orbinel::setMobileGDPRConsent(consent); });
}

void orbinel_enable_idfa_collection(bool enabled) {
    run(__func__, [&] { Orbinel::enableIDFACollection(enabled); });
}

void orbinel_enable_ip_collection(bool enabled) {
    run(__func__, [&] { Orbinel::enableIpCollection(enabled); });
}

void orbinel_enable_location_collection(bool enabled) {
    run(__func__, [&] { Orbinel::enableLocationCollection(enabled); });
}

void orbinel_enable_carrier_collection(bool enabled) {
    run(__func__, [&] { Orbinel::enableCarrierCollection(enabled); });
}

// --- The user ---

orbinel_user* orbinel_get_current_user(void) {
    forgetError();
    return newHandle<orbinel_user>(Orbinel::getCurrentUser());
}

char* orbinel_get_orbinel_id(void) {
    return run(__func__, static_cast<char*>(nullptr), [] {
        const auto id = Orbinel::getOrbinelID();
        return id ? newText(*id) : nullptr;
    });
}

void orbinel_register_orbinel_id_listener_with_selector(orbinel_callback selector, const orbinel_sender* sender) {
    run(__func__, [&] {
        const auto perform = [selector](const Sender& to, const std::string& id) {
            if (selector != nullptr) selector(to.userData.get(), id.c_str());
        };
        Orbinel::registerOrbinelIDListenerWithSelector(perform, senderOf(sender));
    });
}

// --- Products, cart, wishlist and pages ---

orbinel_product* orbinel_create_new_product_with_id(const char* product_id, const char* name, const char* taxonomy,
                                                    const char* image_url, double price, const char* currency) {
    return run(__func__, static_cast<orbinel_product*>(nullptr), [&] {
        return newHandle<orbinel_product>(Orbinel::createNewProductWithID(
            product_id, name, arrayOf("taxonomy", taxonomy), image_url, price, currency));
    });
}

void orbinel_visit_homepage(void) {
    run(__func__, [] { Orbinel::visitHomepage(); });
}

void orbinel_visit_listing_page_with_taxonomy(const char* taxonomy) {
    run(__func__, [&] { Orbinel::visitListingPageWithTaxonomy(arrayOf("taxonomy", taxonomy)); });
}

void orbinel_visit_product_detail_page_with_product(const orbinel_product* product) {
    run(__func__, [&] { Orbinel::visitProductDetailPageWithProduct(orInvalid(product)); });
}

void orbinel_visit_cart_page_with_products(const orbinel_product* const* products, size_t count) {
    run(__func__, [&] { Orbinel::visitCartPageWithProducts(productsOf(products, count)); });
}

void orbinel_visit_wishlist_with_products(const orbinel_product* const* products, size_t count) {
    run(__func__, [&] { Orbinel::visitWishlistWithProducts(productsOf(products, count)); });
}

void orbinel_item_added_to_cart_with_product(const orbinel_product* product) {
    run(__func__, [&] { Orbinel::itemAddedToCartWithProduct(orInvalid(product)); });
}

void orbinel_item_removed_from_cart_with_product_id(const char* product_id) {
    run(__func__, [&] { Orbinel::itemRemovedFromCartWithProductID(product_id); });
}

void orbinel_cart_cleared(void) {
    run(__func__, [] { Orbinel::cartCleared(); });
}

void orbinel_item_purchased_with_sale_id(const char* sale_id, const orbinel_product* product) {
    run(__func__, [&] { Orbinel::itemPurchasedWithSaleID(sale_id, orInvalid(product)); });
}

void orbinel_item_added_to_wishlist_with_product(const orbinel_product* product) {
    run(__func__, [&] { Orbinel::itemAddedToWishlistWithProduct(orInvalid(product)); });
}

void orbinel_item_removed_from_wishlist_with_product_id(const char* product_id) {
    run(__func__, [&] { Orbinel::itemRemovedFromWishlistWithProductID(product_id); });
}

void orbinel_wishlist_cleared(void) {
    run(__func__, [] { Orbinel::wishlistCleared(); });
}

// --- Remote content ---

char* orbinel_get_content_string_with_name(const char* name, const char* default_string, int32_t data_type) {
    return run(__func__, static_cast<char*>(nullptr), [&] {
        return newText(Orbinel::getContentStringWithName(name, default_string, variableType(data_type)));
    });
}

bool orbinel_get_content_bool_with_name(const char* name, bool default_bool, int32_t data_type) {
    return run(__func__, default_bool,
               [&] { return Orbinel::getContentBoolWithName(name, default_bool, variableType(data_type)); });
}

int32_t orbinel_get_content_int_with_name(const char* name, int32_t default_int, int32_t data_type) {
    return run(__func__, default_int,
               [&] { return Orbinel::getContentIntWithName(name, default_int, variableType(data_type)); });
}

char* orbinel_get_content_string_without_cache(const char* name, const char* default_string, int32_t data_type) {
    return run(__func__, static_cast<char*>(nullptr), [&] {
        return newText(Orbinel::getContentStringWithoutCache(name, default_string, variableType(data_type)));
    });
}

bool orbinel_get_content_bool_without_cache(const char* name, bool default_bool, int32_t data_type) {
    return run(__func__, default_bool,
               [&] { return Orbinel::getContentBoolWithoutCache(name, default_bool, variableType(data_type)); });
}

int32_t orbinel_get_content_int_without_cache(const char* name, int32_t default_int, int32_t data_type) {
    return run(__func__, default_int,
               [&] { return Orbinel::getContentIntWithoutCache(name, default_int, variableType(data_type)); });
}

void orbinel_remove_test_variables(void) {
    run(__func__, [] { Orbinel::removeTestVariables(); });
}

// --- Recommendations ---

void orbinel_get_smart_recommendation_with_id(int32_t recommendation_id, const char* locale, const char* currency,
                                              orbinel_callback smart_recommendation, void* user_data,
                                              orbinel_destroy destroy) {
    run(__func__, [&] {
        auto callback = dictionaryCallback(smart_recommendation, takeUserData(user_data, destroy));
        Orbinel::getSmartRecommendationWithID(recommendation_id, locale, currency, std::move(callback));
    });
}

void orbinel_get_smart_recommendation_with_product(const orbinel_product* product, int32_t recommendation_id,
                                                   const char* locale, orbinel_callback smart_recommendation,
                                                   void* user_data, orbinel_destroy destroy) {
    run(__func__, [&] {
        auto callback = dictionaryCallback(smart_recommendation, takeUserData(user_data, destroy));
        Orbinel::getSmartRecommendationWithProduct(orInvalid(product), recommendation_id, locale, std::move(callback));
    });
}

void orbinel_get_smart_recommendation_with_product_ids(const char* product_ids, int32_t recommendation_id,
                                                       const char* locale, const char* currency,
                                                       orbinel_callback smart_recommendation, void* user_data,
                                                       orbinel_destroy destroy) {
    run(__func__, [&] {
        auto callback = dictionaryCallback(smart_recommendation, takeUserData(user_data, destroy));
        Orbinel::getSmartRecommendationWithProductIDs(arrayOf("product_ids", product_ids), recommendation_id, locale,
                                                      currency, std::move(callback));
    });
}

void orbinel_click_smart_recommendation_product_with_id(int32_t recommendation_id, const orbinel_product* product) {
    run(__func__, [&] { Orbinel::clickSmartRecommendationProductWithID(recommendation_id, orInvalid(product)); });
}

// --- Message center ---

void orbinel_get_message_center_data_with_limit(int32_t limit, const double* start_date, const double* end_date,
                                                orbinel_callback success, void* user_data, orbinel_destroy destroy) {
    run(__func__, [&] {
        auto callback = arrayCallback(success, takeUserData(user_data, destroy));
        Orbinel::getMessageCenterDataWithLimit(limit, dateOf(start_date), dateOf(end_date), std::move(callback));
    });
}

// --- In-app messages ---

void orbinel_remove_inapp(void) {
    run(__func__, [] { Orbinel::removeInapp(); });
}

void orbinel_remove_inapp_with_completion_handler(orbinel_completion completion, void* user_data,
                                                  orbinel_destroy destroy) {
    run(__func__, [&] {
        auto callback = completionCallback(completion, takeUserData(user_data, destroy));
        Orbinel::removeInappWithCompletionHandler(std::move(callback));
    });
}

void orbinel_enable_in_app_messages(void) {
    run(__func__, [] { Orbinel::enableInAppMessages(); });
}

void orbinel_disable_in_app_messages(void) {
    run(__func__, [] { Orbinel::disableInAppMessages(); });
}

void orbinel_reenable_templates(void) {
    run(__func__, [] { Orbinel::reenableTemplates(); });
}

void orbinel_disable_templates(void) {
    run(__func__, [] { Orbinel::disableTemplates(); });
}

void orbinel_enable_template_debugging(void) {
    run(__func__, [] { Orbinel::enableTemplateDebugging(); });
}

void orbinel_set_custom_regular_font(const char* font) {
    run(__func__, [&] { Orbinel::setCustomRegularFont(font); });
}

void orbinel_set_custom_bold_font(const char* font) {
    run(__func__, [&] { Orbinel::setCustomBoldFont(font); });
}

void orbinel_set_custom_italic_font(const char* font) {
    run(__func__, [&] { Orbinel::setCustomItalicFont(font); });
}

void orbinel_show_test_inapp(const char* inapp, const char* push_info) {
    run(__func__, [&] { Orbinel::showTestInapp(dictionaryOf("inapp", inapp), dictionaryOf("push_info", push_info)); });
}

void orbinel_show_native_app_review(void) {
    run(__func__, [] { Orbinel::showNativeAppReview(); });
}

// --- Push ---

void orbinel_register_with_quiet_permission(bool quiet) {
    run(__func__, [&] { Orbinel::registerWithQuietPermission(quiet); });
}

void orbinel_register_device_token_with_application(const uint8_t* device_token, size_t length) {
    run(__func__, [&] {
        const auto bytes = device_token != nullptr ? std::span(device_token, length) : std::span<const std::uint8_t>();
        Orbinel::registerDeviceTokenWithApplication(nullptr, bytes);
    });
}

void orbinel_set_push_token(const char* token) {
    run(__func__, [&] { Orbinel::setPushToken(token); });
}

void orbinel_handle_push_log_with_user_info(const char* user_info) {
    run(__func__, [&] { Orbinel::handlePushLogWithUserInfo(optionalDictionaryOf("user_info", user_info)); });
}

void orbinel_trigger_push_process_with_user_info(const char* user_info) {
    run(__func__, [&] { Orbinel::triggerPushProcessWithUserInfo(optionalDictionaryOf("user_info", user_info)); });
}

void orbinel_set_push_action_with_push_info(const char* push_info) {
    run(__func__, [&] { Orbinel::setPushActionWithPushInfo(optionalDictionaryOf("push_info", push_info)); });
}

char* orbinel_get_push_info(const char* user_info) {
    return run(__func__, static_cast<char*>(nullptr), [&] {
        const auto pushInfo = Orbinel::getPushInfo(optionalDictionaryOf("user_info", user_info));
        return pushInfo ? jsonOf(*pushInfo) : nullptr;
    });
}

void orbinel_track_interactive_log_with_user_info(const char* user_info) {
    run(__func__, [&] { Orbinel::trackInteractiveLogWithUserInfo(optionalDictionaryOf("user_info", user_info)); });
}

void orbinel_set_foreground_push_callback(orbinel_callback callback, const orbinel_sender* sender) {
    run(__func__, [&] { Orbinel::setForegroundPushCallback(jsonAction(callback), senderOf(sender)); });
}

void orbinel_set_active_foreground_push_view(void) {
    run(__func__, [] { Orbinel::setActiveForegroundPushView(); });
}

// --- Links, testing one's integration, callbacks, diagnosis ---

void orbinel_handle_universal_link(const char* type, const char* webpage_url) {
    run(__func__, [&] {
        UserActivity activity;
        if (type != nullptr) activity.type = type;
        if (webpage_url != nullptr) activity.webpageUrl = webpage_url;
        Orbinel::handleUniversalLink(activity);
    });
}

void orbinel_handle_url(const char* url) {
    run(__func__, [&] { Orbinel::handleUrl(url); });
}

void orbinel_register_orbinel_callback_with_selector(orbinel_callback selector, const orbinel_sender* sender) {
    run(__func__, [&] { Orbinel::registerOrbinelCallbackWithSelector(jsonAction(selector), senderOf(sender)); });
}

void orbinel_send_error(const char* error, const char* desc) {
    run(__func__, [&] { Orbinel::sendError(error, desc); });
}

char* orbinel_get_sdk_version(void) {
    return run(__func__, static_cast<char*>(nullptr), [] { return newText(Orbinel::getSDKVersion()); });
}

void orbinel_set_development_log(bool on) {
    run(__func__, [&] { Orbinel::setDevelopmentLog(on); });
}

void orbinel_erase_stored_data(void) {
    run(__func__, [] { Orbinel::eraseStoredData(); });
}

void orbinel_erase_stored_data_with_completion_handler(orbinel_callback completion, void* user_data,
                                                       orbinel_destroy destroy) {
    run(__func__, [&] {
        auto callback = problemCallback(completion, takeUserData(user_data, destroy));
        Orbinel::eraseStoredDataWithCompletionHandler(std::move(callback));
    });
}
