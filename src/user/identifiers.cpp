#include "orbinel/identifiers.hpp"

#include <exception>
#include <string>
#include <utility>

#include "base/guard.hpp"
#include "base/visit.hpp"
#include "events/validation.hpp"
#include "user/attribute_codes.hpp"
#include "user/contact_rules.hpp"
#include "user/user_access.hpp"

namespace orbinel {

namespace codes = attribute_codes;

OrbinelIdentifiers::OrbinelIdentifiers(LibraryPart<const UserAccess> access) noexcept : access_(access) {}

/// Out of memory leaves the identifiers as they are.
void OrbinelIdentifiers::set(const char* operation, std::string_view prefix, OptionalText key,
                             OptionalText identifier) noexcept {
    if (identifier.view().empty()) return;
    try {
        auto changed = identifiers_ != nullptr ? *identifiers_ : Dictionary();
        changed.set(std::string(prefix).append(key.view()), identifier.view());
        identifiers_ = std::make_shared<const Dictionary>(std::move(changed));
    } catch (const std::exception& exception) {
        const Visit<const UserAccess> access(access_);
        if (access) reportException(access->reports, operation, exception.what());
    }
}

void OrbinelIdentifiers::refuseKey(std::string_view key) const noexcept {
    const Visit<const UserAccess> access(access_);
    if (access) (void)access->validation.isNameValid(key);
}

OrbinelIdentifiers& OrbinelIdentifiers::addEmail(OptionalText email) & noexcept {
    if (isEmailValid(email.view())) set("-[OrbinelIdentifiers addEmail]", "", codes::EMAIL, email);
    return *this;
}

OrbinelIdentifiers& OrbinelIdentifiers::addPhoneNumber(OptionalText phoneNumber) & noexcept {
    if (isPhoneNumberValid(phoneNumber.view()))
        set("-[OrbinelIdentifiers addPhoneNumber]", "", codes::PHONE_NUMBER, phoneNumber);
    return *this;
}

OrbinelIdentifiers& OrbinelIdentifiers::addUserID(OptionalText userId) & noexcept {
    set("-[OrbinelIdentifiers addUserID]", "", codes::UUID, userId);
    return *this;
}

OrbinelIdentifiers& OrbinelIdentifiers::addCustomIdentifier(OptionalText key, OptionalText identifier) & noexcept {
    if (key.view().empty() || identifier.view().empty()) return *this;
    if (!Validation::hasFormOfName(key.view())) {
        refuseKey(key.view());
        return *this;
    }
    set("-[OrbinelIdentifiers addCustomIdentifier]", codes::customPrefix, key, identifier);
    return *this;
}

OrbinelIdentifiers&& OrbinelIdentifiers::addEmail(OptionalText email) && noexcept { return std::move(addEmail(email)); }
OrbinelIdentifiers&& OrbinelIdentifiers::addPhoneNumber(OptionalText phoneNumber) && noexcept {
    return std::move(addPhoneNumber(phoneNumber));
}
OrbinelIdentifiers&& OrbinelIdentifiers::addUserID(OptionalText userId) && noexcept {
    return std::move(addUserID(userId));
}
OrbinelIdentifiers&& OrbinelIdentifiers::addCustomIdentifier(OptionalText key, OptionalText identifier) && noexcept {
    return std::move(addCustomIdentifier(key, identifier));
}

Dictionary OrbinelIdentifiers::getOrbinelIdentifiers() const noexcept {
    try {
        return identifiers_ != nullptr ? *identifiers_ : Dictionary();
    } catch (const std::exception&) {
        return {};
    }
}

}  // namespace orbinel
