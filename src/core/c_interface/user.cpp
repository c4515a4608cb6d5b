#include <utility>

#include "core/c_interface/callbacks.hpp"
#include "core/c_interface/dates.hpp"
#include "core/c_interface/handles.hpp"

using namespace orbinel;
using namespace orbinel::c_interface;

namespace {

/// Identifiers that are not there are none.
OrbinelIdentifiers orNone(const orbinel_identifiers* identifiers) noexcept {
    return identifiers != nullptr ? identifiers->object : OrbinelIdentifiers();
}

}  // namespace

orbinel_user* orbinel_user_copy(const orbinel_user* user) { return copyOf(user); }

void orbinel_user_free(orbinel_user* user) { delete user; }

void orbinel_user_set_name(orbinel_user* user, const char* name) {
    on(__func__, user, [&](auto& object) { object.setName(name); });
}

void orbinel_user_set_surname(orbinel_user* user, const char* surname) {
    on(__func__, user, [&](auto& object) { object.setSurname(surname); });
}

void orbinel_user_set_language(orbinel_user* user, const char* language) {
    on(__func__, user, [&](auto& object) { object.setLanguage(language); });
}

void orbinel_user_set_locale(orbinel_user* user, const char* locale) {
    on(__func__, user, [&](auto& object) { object.setLocale(locale); });
}

void orbinel_user_set_facebook_id(orbinel_user* user, const char* facebook_id) {
    on(__func__, user, [&](auto& object) { object.setFacebookID(facebook_id); });
}

void orbinel_user_set_twitter_id(orbinel_user* user, const char* twitter_id) {
    on(__func__, user, [&](auto& object) { object.setTwitterID(twitter_id); });
}

static_assert(ORBINEL_GENDER_MALE == static_cast<int>(orbinel::OrbinelGender::male));
static_assert(ORBINEL_GENDER_FEMALE == static_cast<int>(orbinel::OrbinelGender::female));
static_assert(ORBINEL_GENDER_OTHER == static_cast<int>(orbinel::OrbinelGender::other));

void orbinel_user_set_gender(orbinel_user* user, int32_t gender) {
    on(__func__, user, [&](auto& object) { object.setGender(gender); });
}

void orbinel_user_set_birthday(orbinel_user* user, const double* birthday) {
    on(__func__, user, [&](auto& object) { object.setBirthday(dateOf(birthday)); });
}

void orbinel_user_set_age(orbinel_user* user, int32_t age) {
    on(__func__, user, [&](auto& object) { object.setAge(age); });
}

void orbinel_user_set_email(orbinel_user* user, const char* email) {
    on(__func__, user, [&](auto& object) { object.setEmail(email); });
}

void orbinel_user_set_phone_number(orbinel_user* user, const char* phone_number) {
    on(__func__, user, [&](auto& object) { object.setPhoneNumber(phone_number); });
}

void orbinel_user_set_email_optin(orbinel_user* user, bool optin) {
    on(__func__, user, [&](auto& object) { object.setEmailOptin(optin); });
}

void orbinel_user_set_sms_optin(orbinel_user* user, bool optin) {
    on(__func__, user, [&](auto& object) { object.setSMSOptin(optin); });
}

void orbinel_user_set_whatsapp_optin(orbinel_user* user, bool optin) {
    on(__func__, user, [&](auto& object) { object.setWhatsappOptin(optin); });
}

void orbinel_user_set_push_optin(orbinel_user* user, bool optin) {
    on(__func__, user, [&](auto& object) { object.setPushOptin(optin); });
}

void orbinel_user_set_location_optin(orbinel_user* user, bool optin) {
    on(__func__, user, [&](auto& object) { object.setLocationOptin(optin); });
}

void orbinel_user_set_custom_attribute_with_string(orbinel_user* user, const char* name, const char* value) {
    on(__func__, user, [&](auto& object) { object.setCustomAttributeWithString(name, value); });
}

void orbinel_user_set_custom_attribute_with_int(orbinel_user* user, const char* name, int32_t value) {
    on(__func__, user, [&](auto& object) { object.setCustomAttributeWithInt(name, value); });
}

void orbinel_user_set_custom_attribute_with_double(orbinel_user* user, const char* name, double value) {
    on(__func__, user, [&](auto& object) { object.setCustomAttributeWithDouble(name, value); });
}

void orbinel_user_set_custom_attribute_with_boolean(orbinel_user* user, const char* name, bool value) {
    on(__func__, user, [&](auto& object) { object.setCustomAttributeWithBoolean(name, value); });
}

void orbinel_user_set_custom_attribute_with_date(orbinel_user* user, const char* name, const double* value) {
    on(__func__, user, [&](auto& object) { object.setCustomAttributeWithDate(name, dateOf(value)); });
}

void orbinel_user_set_custom_attribute_with_array(orbinel_user* user, const char* name, const char* value) {
    on(__func__, user, [&](auto& object) { object.setCustomAttributeWithArray(name, arrayOf("value", value)); });
}

void orbinel_user_unset_custom_attribute(orbinel_user* user, const char* name) {
    on(__func__, user, [&](auto& object) { object.unsetCustomAttribute(name); });
}

void orbinel_user_login(const orbinel_user* user, const orbinel_identifiers* identifiers) {
    on(__func__, user, [&](const auto& object) { object.login(orNone(identifiers)); });
}

void orbinel_user_login_orbinel_id_result(const orbinel_user* user, const orbinel_identifiers* identifiers,
                                          orbinel_callback orbinel_id_result, void* user_data,
                                          orbinel_destroy destroy) {
    run(__func__, [&] {
        auto result = textCallback(orbinel_id_result, takeUserData(user_data, destroy));
        if (user != nullptr) user->object.login(orNone(identifiers), std::move(result));
    });
}

void orbinel_user_logout(const orbinel_user* user) {
    on(__func__, user, [](const auto& object) { object.logout(); });
}

bool orbinel_user_are_identifiers_already_cached(const orbinel_user* user, const orbinel_identifiers* identifiers) {
    return look(__func__, user, false,
                [&](const auto& object) { return object.areIdentifiersAlreadyCached(orNone(identifiers)); });
}
