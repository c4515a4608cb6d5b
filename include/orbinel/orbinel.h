#pragma once

#include <stdbool.h>
#include <stddef.h>
#include <stdint.h>

#include "orbinel/export.hpp"

/* The library's public surface for programs of other languages: C11, and usable through any foreign-function interface.
 *
 * Each function stands for the operation of the same name, which orbinel.hpp, event.hpp, user.hpp, product.hpp and
 * identifiers.hpp describe: what it does, what it refuses, whether it is gated, which threads. A program starts the
 * library by a host's C header (orbinel/linux/orbinel_linux.h, orbinel/gtk/orbinel_gtk.h,
 * orbinel/headless/orbinel_headless.h).
 *
 * NAMES. A function is called as its operation is, in lower case with "_" between the words, where an abbreviation is
 * one word (setGDPRConsent: orbinel_set_gdpr_consent), after the prefix of its class: orbinel_ for Orbinel,
 * orbinel_event_, orbinel_user_, orbinel_product_, orbinel_identifiers_. Where operations of one name take more or
 * fewer arguments, the names of the further ones follow: orbinel_user_login_orbinel_id_result. Where they differ in the
 * type of an argument only, one function stands for all.
 *
 * ARGUMENTS. Texts are UTF-8 and end with NUL. NULL stands for what is absent: a text, a list, a date, an object; an
 * operation on a NULL object does nothing. Absent is not empty: the default origin of the API is the custom endpoint
 * "", or a call without that argument. Dates are pointers to seconds since 1970 (UTC, with fractions). Lists and
 * dictionaries are JSON texts, in which a whole number of 32 bits is a 32-bit integer, null the null marker, and
 * objects of one key stand for what JSON does not have:
 *
 *     {"$int64": n}   {"$double": x}, also "nan", "inf", "-inf"   {"$date": seconds}   {"$bytes": "hexadecimal digits"}
 *
 * JSON is read and written while the library runs only. A function whose JSON is wrong does nothing but return its
 * neutral value, and `orbinel_last_error` says what is wrong and where.
 *
 * RESULTS. Texts and JSON texts (char*) are the caller's, who hands them to `orbinel_free`; NULL stands for nothing. A
 * text ends at its first NUL. A function that returns bool and writes a value writes it only where there is one (true).
 *
 * OBJECTS. Events, users, products and identifiers belong to the caller, who frees them by their own function. They may
 * outlive the library, and do nothing then.
 *
 * CALLBACKS. A callback gets its user data and a text that it may use until it returns. `destroy`, which may be NULL,
 * is called with the user data exactly once: when the library has let go of the callback, also where it was never
 * called; on whichever thread lets go. Neither may throw or jump out.
 *
 * THREADS. Any, at any time: before the start and after the shutdown, functions are neutral. No function throws. */

#ifdef __cplusplus
extern "C" {
#endif

typedef struct orbinel_event orbinel_event;
typedef struct orbinel_user orbinel_user;
typedef struct orbinel_product orbinel_product;
typedef struct orbinel_identifiers orbinel_identifiers;
typedef struct orbinel_sender orbinel_sender;

typedef void (*orbinel_callback)(void* user_data, const char* text);
typedef void (*orbinel_completion)(void* user_data);
typedef void (*orbinel_destroy)(void* user_data);

/* --- Of this interface alone --- */

/* One sentence about the latest call of this thread, where that could not read its arguments or write its result: also
 * because the library is not started, which JSON takes. Else NULL. It stays until the thread's next call;
 * `orbinel_free` and the functions that free objects leave it alone. */
ORBINEL_API const char* orbinel_last_error(void);

/* Frees a text that a function returned; NULL is ignored. */
ORBINEL_API void orbinel_free(void* text);

/* Who is told by the callbacks that stay registered: the user data that they get. They are not called any more once it
 * is freed; `destroy` runs then, or after a call that is under way on another thread. */
ORBINEL_API orbinel_sender* orbinel_sender_create(void* user_data, orbinel_destroy destroy);
ORBINEL_API void orbinel_sender_free(orbinel_sender* sender);

/* Ends the library. Call it before the host is freed. */
ORBINEL_API void orbinel_shutdown(void);

/* --- Initialisation --- */

/* The push among the launch options stands under this key. */
#define ORBINEL_LAUNCH_OPTIONS_REMOTE_NOTIFICATION_KEY "UIApplicationLaunchOptionsRemoteNotificationKey"

/* `launch_options`: a JSON object. */
ORBINEL_API void orbinel_init_with_launch_options(const char* launch_options, const char* partner_name,
                                                  const char* app_group);
ORBINEL_API void orbinel_init_with_launch_options_custom_endpoint(const char* launch_options, const char* partner_name,
                                                                  const char* app_group, const char* custom_endpoint);
ORBINEL_API void orbinel_init_sdk(const char* partner_name, const char* launch_options);
ORBINEL_API void orbinel_reinit_with_partner_name(const char* partner_name);
/* Takes a text, not JSON. */
ORBINEL_API bool orbinel_partner_name_is_valid(const char* partner_name);
ORBINEL_API void orbinel_disable_auto_integration(void);
ORBINEL_API void orbinel_set_hybrid_sdk_version(const char* version);
ORBINEL_API void orbinel_hybrid_application_did_become_active(void);

/* --- Events --- */

/* The event is the caller's; finish it by `orbinel_event_build`, then free it. */
ORBINEL_API orbinel_event* orbinel_tag_event(const char* name);
ORBINEL_API void orbinel_sign_up_confirmation(void);

/* --- Consent and collection --- */

ORBINEL_API void orbinel_set_gdpr_consent(bool consent);
ORBINEL_API void orbinel_set_mobile_gdpr_consent(bool consent);
ORBINEL_API void orbinel_enable_idfa_collection(bool enabled);
ORBINEL_API void orbinel_enable_ip_collection(bool enabled);
ORBINEL_API void orbinel_enable_location_collection(bool enabled);
ORBINEL_API void orbinel_enable_carrier_collection(bool enabled);

/* --- The user --- */

/* The handle is the caller's. */
ORBINEL_API orbinel_user* orbinel_get_current_user(void);
ORBINEL_API char* orbinel_get_orbinel_id(void);
/* The callback gets the ID. The same sender again: the new callback takes the place of the one before. */
ORBINEL_API void orbinel_register_orbinel_id_listener_with_selector(orbinel_callback selector,
                                                                    const orbinel_sender* sender);

/* --- Products, cart, wishlist and pages --- */

/* `taxonomy`: a JSON array of texts. The product is the caller's: NULL only where `taxonomy` cannot be read, else one
 * that may not be valid. */
ORBINEL_API orbinel_product* orbinel_create_new_product_with_id(const char* product_id, const char* name,
                                                                const char* taxonomy, const char* image_url,
                                                                double price, const char* currency);
ORBINEL_API void orbinel_visit_homepage(void);
ORBINEL_API void orbinel_visit_listing_page_with_taxonomy(const char* taxonomy);
ORBINEL_API void orbinel_visit_product_detail_page_with_product(const orbinel_product* product);
/* `products`: so many pointers, of which some may be NULL. */
ORBINEL_API void orbinel_visit_cart_page_with_products(const orbinel_product* const* products, size_t count);
ORBINEL_API void orbinel_visit_wishlist_with_products(const orbinel_product* const* products, size_t count);
ORBINEL_API void orbinel_item_added_to_cart_with_product(const orbinel_product* product);
ORBINEL_API void orbinel_item_removed_from_cart_with_product_id(const char* product_id);
ORBINEL_API void orbinel_cart_cleared(void);
ORBINEL_API void orbinel_item_purchased_with_sale_id(const char* sale_id, const orbinel_product* product);
ORBINEL_API void orbinel_item_added_to_wishlist_with_product(const orbinel_product* product);
ORBINEL_API void orbinel_item_removed_from_wishlist_with_product_id(const char* product_id);
ORBINEL_API void orbinel_wishlist_cleared(void);

/* --- Remote content --- */

/* What a variable is used for. */
#define ORBINEL_VARIABLE_TYPE_CONTENT 0
#define ORBINEL_VARIABLE_TYPE_ELEMENT 1

ORBINEL_API char* orbinel_get_content_string_with_name(const char* name, const char* default_string, int32_t data_type);
ORBINEL_API bool orbinel_get_content_bool_with_name(const char* name, bool default_bool, int32_t data_type);
ORBINEL_API int32_t orbinel_get_content_int_with_name(const char* name, int32_t default_int, int32_t data_type);
ORBINEL_API char* orbinel_get_content_string_without_cache(const char* name, const char* default_string,
                                                           int32_t data_type);
ORBINEL_API bool orbinel_get_content_bool_without_cache(const char* name, bool default_bool, int32_t data_type);
ORBINEL_API int32_t orbinel_get_content_int_without_cache(const char* name, int32_t default_int, int32_t data_type);
ORBINEL_API void orbinel_remove_test_variables(void);

/* --- Recommendations: the callback gets the answer, a JSON object. `product_ids`: a JSON array of texts --- */

ORBINEL_API void orbinel_get_smart_recommendation_with_id(int32_t recommendation_id, const char* locale,
                                                          const char* currency, orbinel_callback smart_recommendation,
                                                          void* user_data, orbinel_destroy destroy);
ORBINEL_API void orbinel_get_smart_recommendation_with_product(const orbinel_product* product,
                                                               int32_t recommendation_id, const char* locale,
                                                               orbinel_callback smart_recommendation, void* user_data,
                                                               orbinel_destroy destroy);
ORBINEL_API void orbinel_get_smart_recommendation_with_product_ids(const char* product_ids, int32_t recommendation_id,
                                                                   const char* locale, const char* currency,
                                                                   orbinel_callback smart_recommendation,
                                                                   void* user_data, orbinel_destroy destroy);
ORBINEL_API void orbinel_click_smart_recommendation_product_with_id(int32_t recommendation_id,
                                                                    const orbinel_product* product);

/* --- Message center --- */

/* The callback gets a JSON array. */
ORBINEL_API void orbinel_get_message_center_data_with_limit(int32_t limit, const double* start_date,
                                                            const double* end_date, orbinel_callback success,
                                                            void* user_data, orbinel_destroy destroy);

/* --- In-app messages --- */

ORBINEL_API void orbinel_remove_inapp(void);
ORBINEL_API void orbinel_remove_inapp_with_completion_handler(orbinel_completion completion, void* user_data,
                                                              orbinel_destroy destroy);
ORBINEL_API void orbinel_enable_in_app_messages(void);
ORBINEL_API void orbinel_disable_in_app_messages(void);
ORBINEL_API void orbinel_reenable_templates(void);
ORBINEL_API void orbinel_disable_templates(void);
ORBINEL_API void orbinel_enable_template_debugging(void);
ORBINEL_API void orbinel_set_custom_regular_font(const char* font);
ORBINEL_API void orbinel_set_custom_bold_font(const char* font);
ORBINEL_API void orbinel_set_custom_italic_font(const char* font);
/* Both are JSON objects. */
ORBINEL_API void orbinel_show_test_inapp(const char* inapp, const char* push_info);
ORBINEL_API void orbinel_show_native_app_review(void);

/* --- Push: payloads (`user_info`, `push_info`) are JSON objects --- */

ORBINEL_API void orbinel_register_with_quiet_permission(bool quiet);
/* The token's bytes. The operation's application is left out: it is not looked at. */
ORBINEL_API void orbinel_register_device_token_with_application(const uint8_t* device_token, size_t length);
ORBINEL_API void orbinel_set_push_token(const char* token);
ORBINEL_API void orbinel_handle_push_log_with_user_info(const char* user_info);
ORBINEL_API void orbinel_trigger_push_process_with_user_info(const char* user_info);
ORBINEL_API void orbinel_set_push_action_with_push_info(const char* push_info);
ORBINEL_API char* orbinel_get_push_info(const char* user_info);
ORBINEL_API void orbinel_track_interactive_log_with_user_info(const char* user_info);
/* The callback gets a payload. */
ORBINEL_API void orbinel_set_foreground_push_callback(orbinel_callback callback, const orbinel_sender* sender);
ORBINEL_API void orbinel_set_active_foreground_push_view(void);

/* --- Links, testing one's integration, callbacks, diagnosis --- */

/* The activity by its parts. `type`: NULL stands for that of a web page, ORBINEL_BROWSING_WEB_ACTIVITY_TYPE. */
#define ORBINEL_BROWSING_WEB_ACTIVITY_TYPE "NSUserActivityTypeBrowsingWeb"
ORBINEL_API void orbinel_handle_universal_link(const char* type, const char* webpage_url);
ORBINEL_API void orbinel_handle_url(const char* url);
/* The callback gets {"type", "data"}. */
ORBINEL_API void orbinel_register_orbinel_callback_with_selector(orbinel_callback selector,
                                                                 const orbinel_sender* sender);
ORBINEL_API void orbinel_send_error(const char* error, const char* desc);
ORBINEL_API char* orbinel_get_sdk_version(void);
ORBINEL_API void orbinel_set_development_log(bool on);
ORBINEL_API void orbinel_erase_stored_data(void);
/* The completion gets NULL, or one sentence about what could not be erased. */
ORBINEL_API void orbinel_erase_stored_data_with_completion_handler(orbinel_callback completion, void* user_data,
                                                                   orbinel_destroy destroy);

/* --- An event --- */

ORBINEL_API orbinel_event* orbinel_event_create(const char* name);
ORBINEL_API orbinel_event* orbinel_event_copy(const orbinel_event* event);
ORBINEL_API void orbinel_event_free(orbinel_event* event);
ORBINEL_API void orbinel_event_add_parameter_with_string(orbinel_event* event, const char* key, const char* value);
ORBINEL_API void orbinel_event_add_parameter_with_int(orbinel_event* event, const char* key, int32_t value);
ORBINEL_API void orbinel_event_add_parameter_with_double(orbinel_event* event, const char* key, double value);
ORBINEL_API void orbinel_event_add_parameter_with_boolean(orbinel_event* event, const char* key, bool value);
ORBINEL_API void orbinel_event_add_parameter_with_date(orbinel_event* event, const char* key, const double* value);
/* `value`: a JSON array. */
ORBINEL_API void orbinel_event_add_parameter_with_array(orbinel_event* event, const char* key, const char* value);
/* `parameters`: a JSON object. */
ORBINEL_API void orbinel_event_add_parameters(orbinel_event* event, const char* parameters);
ORBINEL_API void orbinel_event_build(orbinel_event* event);
ORBINEL_API char* orbinel_event_get_name(const orbinel_event* event);
/* A JSON object. */
ORBINEL_API char* orbinel_event_get_parameters(const orbinel_event* event);
ORBINEL_API bool orbinel_event_is_internal(const orbinel_event* event);

/* --- The user: got by `orbinel_get_current_user` --- */

/* Codes of `orbinel_user_set_gender`. */
#define ORBINEL_GENDER_MALE 0
#define ORBINEL_GENDER_FEMALE 1
#define ORBINEL_GENDER_OTHER 2

ORBINEL_API orbinel_user* orbinel_user_copy(const orbinel_user* user);
ORBINEL_API void orbinel_user_free(orbinel_user* user);
ORBINEL_API void orbinel_user_set_name(orbinel_user* user, const char* name);
ORBINEL_API void orbinel_user_set_surname(orbinel_user* user, const char* surname);
ORBINEL_API void orbinel_user_set_language(orbinel_user* user, const char* language);
ORBINEL_API void orbinel_user_set_locale(orbinel_user* user, const char* locale);
ORBINEL_API void orbinel_user_set_facebook_id(orbinel_user* user, const char* facebook_id);
ORBINEL_API void orbinel_user_set_twitter_id(orbinel_user* user, const char* twitter_id);
ORBINEL_API void orbinel_user_set_gender(orbinel_user* user, int32_t gender);
ORBINEL_API void orbinel_user_set_birthday(orbinel_user* user, const double* birthday);
ORBINEL_API void orbinel_user_set_age(orbinel_user* user, int32_t age);
ORBINEL_API void orbinel_user_set_email(orbinel_user* user, const char* email);
ORBINEL_API void orbinel_user_set_phone_number(orbinel_user* user, const char* phone_number);
ORBINEL_API void orbinel_user_set_email_optin(orbinel_user* user, bool optin);
ORBINEL_API void orbinel_user_set_sms_optin(orbinel_user* user, bool optin);
ORBINEL_API void orbinel_user_set_whatsapp_optin(orbinel_user* user, bool optin);
ORBINEL_API void orbinel_user_set_push_optin(orbinel_user* user, bool optin);
ORBINEL_API void orbinel_user_set_location_optin(orbinel_user* user, bool optin);
ORBINEL_API void orbinel_user_set_custom_attribute_with_string(orbinel_user* user, const char* name, const char* value);
ORBINEL_API void orbinel_user_set_custom_attribute_with_int(orbinel_user* user, const char* name, int32_t value);
ORBINEL_API void orbinel_user_set_custom_attribute_with_double(orbinel_user* user, const char* name, double value);
ORBINEL_API void orbinel_user_set_custom_attribute_with_boolean(orbinel_user* user, const char* name, bool value);
ORBINEL_API void orbinel_user_set_custom_attribute_with_date(orbinel_user* user, const char* name, const double* value);
/* `value`: a JSON array. */
ORBINEL_API void orbinel_user_set_custom_attribute_with_array(orbinel_user* user, const char* name, const char* value);
ORBINEL_API void orbinel_user_unset_custom_attribute(orbinel_user* user, const char* name);
ORBINEL_API void orbinel_user_login(const orbinel_user* user, const orbinel_identifiers* identifiers);
/* The callback gets the ID. */
ORBINEL_API void orbinel_user_login_orbinel_id_result(const orbinel_user* user, const orbinel_identifiers* identifiers,
                                                      orbinel_callback orbinel_id_result, void* user_data,
                                                      orbinel_destroy destroy);
ORBINEL_API void orbinel_user_logout(const orbinel_user* user);
ORBINEL_API bool orbinel_user_are_identifiers_already_cached(const orbinel_user* user,
                                                             const orbinel_identifiers* identifiers);

/* --- Identifiers for a login --- */

ORBINEL_API orbinel_identifiers* orbinel_identifiers_create(void);
ORBINEL_API orbinel_identifiers* orbinel_identifiers_copy(const orbinel_identifiers* identifiers);
ORBINEL_API void orbinel_identifiers_free(orbinel_identifiers* identifiers);
ORBINEL_API void orbinel_identifiers_add_email(orbinel_identifiers* identifiers, const char* email);
ORBINEL_API void orbinel_identifiers_add_phone_number(orbinel_identifiers* identifiers, const char* phone_number);
ORBINEL_API void orbinel_identifiers_add_user_id(orbinel_identifiers* identifiers, const char* user_id);
ORBINEL_API void orbinel_identifiers_add_custom_identifier(orbinel_identifiers* identifiers, const char* key,
                                                           const char* identifier);
/* A JSON object. */
ORBINEL_API char* orbinel_identifiers_get_orbinel_identifiers(const orbinel_identifiers* identifiers);

/* --- A product: made by `orbinel_create_new_product_with_id` --- */

ORBINEL_API orbinel_product* orbinel_product_copy(const orbinel_product* product);
ORBINEL_API void orbinel_product_free(orbinel_product* product);
ORBINEL_API bool orbinel_product_is_product_valid(const orbinel_product* product);
ORBINEL_API bool orbinel_product_get_product_control_success(const orbinel_product* product);
ORBINEL_API void orbinel_product_set_product_id(orbinel_product* product, const char* product_id);
ORBINEL_API void orbinel_product_set_name(orbinel_product* product, const char* name);
/* A JSON array of texts. */
ORBINEL_API void orbinel_product_set_taxonomy(orbinel_product* product, const char* taxonomy);
ORBINEL_API void orbinel_product_set_product_image_url(orbinel_product* product, const char* url);
ORBINEL_API void orbinel_product_set_unit_price(orbinel_product* product, double price);
ORBINEL_API void orbinel_product_set_currency(orbinel_product* product, const char* currency);
ORBINEL_API void orbinel_product_set_sale_id(orbinel_product* product, const char* sale_id);
ORBINEL_API void orbinel_product_set_color(orbinel_product* product, const char* color);
ORBINEL_API void orbinel_product_set_size(orbinel_product* product, const char* size);
ORBINEL_API void orbinel_product_set_voucher_name(orbinel_product* product, const char* name);
ORBINEL_API void orbinel_product_set_promotion_name(orbinel_product* product, const char* name);
ORBINEL_API void orbinel_product_set_group_code(orbinel_product* product, const char* group_code);
ORBINEL_API void orbinel_product_set_sale_price(orbinel_product* product, double price);
ORBINEL_API void orbinel_product_set_shipping_cost(orbinel_product* product, double cost);
ORBINEL_API void orbinel_product_set_voucher_discount(orbinel_product* product, double discount);
ORBINEL_API void orbinel_product_set_promotion_discount(orbinel_product* product, double discount);
ORBINEL_API void orbinel_product_set_stock(orbinel_product* product, int32_t stock);
ORBINEL_API void orbinel_product_set_quantity(orbinel_product* product, int32_t quantity);
ORBINEL_API void orbinel_product_set_in_stock(orbinel_product* product, bool in_stock);
ORBINEL_API void orbinel_product_set_custom_attribute_with_string(orbinel_product* product, const char* name,
                                                                  const char* value);
ORBINEL_API void orbinel_product_set_custom_attribute_with_int(orbinel_product* product, const char* name,
                                                               int32_t value);
ORBINEL_API void orbinel_product_set_custom_attribute_with_boolean(orbinel_product* product, const char* name,
                                                                   bool value);
ORBINEL_API void orbinel_product_set_custom_attribute_with_double(orbinel_product* product, const char* name,
                                                                  double value);
ORBINEL_API void orbinel_product_set_custom_attribute_with_date(orbinel_product* product, const char* name,
                                                                const double* value);
/* `value`: a JSON array. */
ORBINEL_API void orbinel_product_set_custom_attribute_with_array(orbinel_product* product, const char* name,
                                                                 const char* value);
/* A JSON object. */
ORBINEL_API char* orbinel_product_get_product_summary(const orbinel_product* product);
ORBINEL_API char* orbinel_product_get_product_id(const orbinel_product* product);
ORBINEL_API char* orbinel_product_get_name(const orbinel_product* product);
/* A JSON array. */
ORBINEL_API char* orbinel_product_get_taxonomy(const orbinel_product* product);
ORBINEL_API char* orbinel_product_get_image_url(const orbinel_product* product);
ORBINEL_API char* orbinel_product_get_currency(const orbinel_product* product);
ORBINEL_API char* orbinel_product_get_group_code(const orbinel_product* product);
ORBINEL_API double orbinel_product_get_unit_price(const orbinel_product* product);
ORBINEL_API int32_t orbinel_product_get_quantity(const orbinel_product* product);
ORBINEL_API char* orbinel_product_get_custom_attribute_string(const orbinel_product* product, const char* name);
ORBINEL_API bool orbinel_product_get_custom_attribute_int(const orbinel_product* product, const char* name,
                                                          int32_t* value);
ORBINEL_API bool orbinel_product_get_custom_attribute_boolean(const orbinel_product* product, const char* name,
                                                              bool* value);
ORBINEL_API bool orbinel_product_get_custom_attribute_double(const orbinel_product* product, const char* name,
                                                             double* value);
ORBINEL_API char* orbinel_product_get_custom_attribute_date(const orbinel_product* product, const char* name);
/* A JSON array. */
ORBINEL_API char* orbinel_product_get_custom_attribute_array(const orbinel_product* product, const char* name);

#ifdef __cplusplus
}
#endif
