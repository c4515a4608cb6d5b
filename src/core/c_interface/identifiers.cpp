#include "core/c_interface/handles.hpp"

using namespace orbinel;
using namespace orbinel::c_interface;

orbinel_identifiers* orbinel_identifiers_create(void) {
    forgetError();
    return newHandle<orbinel_identifiers>(OrbinelIdentifiers());
}

orbinel_identifiers* orbinel_identifiers_copy(const orbinel_identifiers* identifiers) { return copyOf(identifiers); }

void orbinel_identifiers_free(orbinel_identifiers* identifiers) { delete identifiers; }

void orbinel_identifiers_add_email(orbinel_identifiers* identifiers, const char* email) {
    on(__func__, identifiers, [&](auto& object) { object.addEmail(email); });
}

void orbinel_identifiers_add_phone_number(orbinel_identifiers* identifiers, const char* phone_number) {
    on(__func__, identifiers, [&](auto& object) { object.addPhoneNumber(phone_number); });
}

void orbinel_identifiers_add_user_id(orbinel_identifiers* identifiers, const char* user_id) {
    on(__func__, identifiers, [&](auto& object) { object.addUserID(user_id); });
}

void orbinel_identifiers_add_custom_identifier(orbinel_identifiers* identifiers, const char* key,
                                               const char* identifier) {
    on(__func__, identifiers, [&](auto& object) { object.addCustomIdentifier(key, identifier); });
}

char* orbinel_identifiers_get_orbinel_identifiers(const orbinel_identifiers* identifiers) {
    return lookAtJson(__func__, identifiers, [](const auto& object) { return object.getOrbinelIdentifiers(); });
}
