#include "orbinel/user.hpp"

#include <cmath>
#include <utility>

#include "base/guard.hpp"
#include "base/visit.hpp"
#include "user/attribute_codes.hpp"
#include "user/contact_rules.hpp"
#include "user/user_access.hpp"

namespace orbinel {

namespace codes = attribute_codes;

namespace {

constexpr std::int32_t oldestAge = 999;
constexpr std::int32_t largestCustomInt = 99'999'999;

std::string_view nameOfGender(std::int32_t code) noexcept {
    switch (static_cast<OrbinelGender>(code)) {
        case OrbinelGender::male:
            return "male";
        case OrbinelGender::female:
            return "female";
        case OrbinelGender::other:
            break;
    }
    return "other";
}

/// For the development log, which does not repeat what was given.
void noteRefusal(const UserAccess& access, const char* operation, std::string_view rule) noexcept {
    access.reports.note([&] { return std::string(operation) + " changed nothing: " + std::string(rule) + "."; });
}

void logRefusal(const UserAccess& access, std::string_view message) noexcept {
    access.reports.log(LogType::attributes, LogLevel::info, message, [] { return Dictionary(); });
}

}  // namespace

OrbinelUser::OrbinelUser(LibraryPart<const UserAccess> access) noexcept : access_(access) {}

/// Runs a step on the library, while that runs.
template <typename Step>
void OrbinelUser::visit(const char* operation, Step&& step) const noexcept {
    const Visit<const UserAccess> access(access_);
    if (access) guarded(access->reports, operation, [&] { step(*access); });
}

void OrbinelUser::setText(const char* operation, std::string_view code, OptionalText value) const noexcept {
    visit(operation, [&](const UserAccess& access) {
        if (value.view().empty()) return noteRefusal(access, operation, "the text is empty");
        access.attributes.setUserAttributeWithString(code, value);
    });
}

void OrbinelUser::setFlag(const char* operation, std::string_view code, bool value) const noexcept {
    visit(operation, [&](const UserAccess& access) { access.attributes.setUserAttributeWithBoolean(code, value); });
}

// --- Standard attributes ---

OrbinelUser& OrbinelUser::setName(OptionalText name) & noexcept {
    setText("-[OrbinelUser setName]", codes::NAME, name);
    return *this;
}

OrbinelUser& OrbinelUser::setSurname(OptionalText surname) & noexcept {
    setText("-[OrbinelUser setSurname]", codes::SURNAME, surname);
    return *this;
}

OrbinelUser& OrbinelUser::setLanguage(OptionalText language) & noexcept {
    setText("-[OrbinelUser setLanguage]", codes::LANGUAGE, language);
    return *this;
}

OrbinelUser& OrbinelUser::setLocale(OptionalText locale) & noexcept {
    setText("-[OrbinelUser setLocale]", codes::LOCALE, locale);
    return *this;
}

OrbinelUser& OrbinelUser::setFacebookID(OptionalText facebookId) & noexcept {
    setText("-[OrbinelUser setFacebookID]", codes::FACEBOOK_ID, facebookId);
    return *this;
}

OrbinelUser& OrbinelUser::setTwitterID(OptionalText twitterId) & noexcept {
    setText("-[OrbinelUser setTwitterID]", codes::TWITTER_ID, twitterId);
    return *this;
}

OrbinelUser& OrbinelUser::setGender(OrbinelGender gender) & noexcept {
    return setGender(static_cast<std::int32_t>(gender));
}

OrbinelUser& OrbinelUser::setGender(std::int32_t gender) & noexcept {
    setText("-[OrbinelUser setGender]", codes::GENDER, nameOfGender(gender));
    return *this;
}

OrbinelUser& OrbinelUser::setBirthday(std::optional<Date> birthday) & noexcept {
    visit("-[OrbinelUser setBirthday]",
          [&](const UserAccess& access) { access.attributes.setUserAttributeWithDate(codes::BIRTHDAY, birthday); });
    return *this;
}

OrbinelUser& OrbinelUser::setAge(std::int32_t age) & noexcept {
    constexpr auto operation = "-[OrbinelUser setAge]";
    visit(operation, [&](const UserAccess& access) {
        if (age < 1 || age > oldestAge) return noteRefusal(access, operation, "an age is 1 to 999");
        access.attributes.setUserAttributeWithInt(codes::AGE, age);
    });
    return *this;
}

OrbinelUser& OrbinelUser::setEmail(OptionalText email) & noexcept {
    if (!email.isPresent()) return *this;
    visit("-[OrbinelUser setEmail]", [&](const UserAccess& access) {
        if (!isEmailValid(email.view())) return logRefusal(access, "setEmail method called with an invalid email.");
        access.attributes.setUserAttributeWithString(codes::MANUEL_EMAIL, email);
    });
    return *this;
}

OrbinelUser& OrbinelUser::setPhoneNumber(OptionalText phoneNumber) & noexcept {
    if (!phoneNumber.isPresent()) return *this;
    visit("-[OrbinelUser setPhoneNumber]", [&](const UserAccess& access) {
        if (!isPhoneNumberValid(phoneNumber.view())) {
            return logRefusal(access, "setPhoneNumber method called with an invalid phone number.");
        }
        access.attributes.setUserAttributeWithString(codes::MANUEL_PHONE_NUMBER, phoneNumber);
    });
    return *this;
}

OrbinelUser& OrbinelUser::setEmailOptin(bool optin) & noexcept {
    setFlag("-[OrbinelUser setEmailOptin]", codes::EMAIL_OPTIN, optin);
    return *this;
}

OrbinelUser& OrbinelUser::setSMSOptin(bool optin) & noexcept {
    setFlag("-[OrbinelUser setSMSOptin]", codes::SMS_OPTIN, optin);
    return *this;
}

OrbinelUser& OrbinelUser::setWhatsappOptin(bool optin) & noexcept {
    setFlag("-[OrbinelUser setWhatsappOptin]", codes::WHATSAPP_OPTIN, optin);
    return *this;
}

OrbinelUser& OrbinelUser::setPushOptin(bool optin) & noexcept {
    visit("-[OrbinelUser setPushOptin]", [&](const UserAccess& access) { access.attributes.setPushEnabled(optin); });
    return *this;
}

OrbinelUser& OrbinelUser::setLocationOptin(bool optin) & noexcept {
    visit("-[OrbinelUser setLocationOptin]",
          [&](const UserAccess& access) { access.attributes.setLocationEnabled(optin); });
    return *this;
}

// --- Custom attributes ---

OrbinelUser& OrbinelUser::setCustomAttributeWithString(OptionalText name, OptionalText value) & noexcept {
    visit("-[OrbinelUser setCustomAttributeWithString]",
          [&](const UserAccess& access) { access.attributes.setCustomAttributeWithString(name.view(), value); });
    return *this;
}

OrbinelUser& OrbinelUser::setCustomAttributeWithInt(OptionalText name, std::int32_t value) & noexcept {
    constexpr auto operation = "-[OrbinelUser setCustomAttributeWithInt]";
    visit(operation, [&](const UserAccess& access) {
        const bool inRange = value >= 1 && value <= largestCustomInt;
        if (!inRange) return noteRefusal(access, operation, "an integer is 1 to 99999999, a double may be any number");
        access.attributes.setCustomAttributeWithInt(name.view(), value);
    });
    return *this;
}

OrbinelUser& OrbinelUser::setCustomAttributeWithDouble(OptionalText name, double value) & noexcept {
    constexpr auto operation = "-[OrbinelUser setCustomAttributeWithDouble]";
    visit(operation, [&](const UserAccess& access) {
        if (!std::isfinite(value)) return noteRefusal(access, operation, "the number is not finite");
        access.attributes.setCustomAttributeWithDouble(name.view(), value);
    });
    return *this;
}

OrbinelUser& OrbinelUser::setCustomAttributeWithBoolean(OptionalText name, bool value) & noexcept {
    visit("-[OrbinelUser setCustomAttributeWithBoolean]",
          [&](const UserAccess& access) { access.attributes.setCustomAttributeWithBoolean(name.view(), value); });
    return *this;
}

OrbinelUser& OrbinelUser::setCustomAttributeWithDate(OptionalText name, std::optional<Date> value) & noexcept {
    visit("-[OrbinelUser setCustomAttributeWithDate]",
          [&](const UserAccess& access) { access.attributes.setCustomAttributeWithDate(name.view(), value); });
    return *this;
}

OrbinelUser& OrbinelUser::setCustomAttributeWithArray(OptionalText name, const Array& value) & noexcept {
    visit("-[OrbinelUser setCustomAttributeWithArray]",
          [&](const UserAccess& access) { access.attributes.setCustomAttributeWithArray(name.view(), value); });
    return *this;
}

OrbinelUser& OrbinelUser::unsetCustomAttribute(OptionalText name) & noexcept {
    visit("-[OrbinelUser unsetCustomAttribute]",
          [&](const UserAccess& access) { access.attributes.unsetCustomAttribute(name.view()); });
    return *this;
}

// --- The same on a temporary ---

OrbinelUser&& OrbinelUser::setName(OptionalText name) && noexcept { return std::move(setName(name)); }
OrbinelUser&& OrbinelUser::setSurname(OptionalText surname) && noexcept { return std::move(setSurname(surname)); }
OrbinelUser&& OrbinelUser::setLanguage(OptionalText language) && noexcept { return std::move(setLanguage(language)); }
OrbinelUser&& OrbinelUser::setLocale(OptionalText locale) && noexcept { return std::move(setLocale(locale)); }
OrbinelUser&& OrbinelUser::setFacebookID(OptionalText facebookId) && noexcept {
    return std::move(setFacebookID(facebookId));
}
OrbinelUser&& OrbinelUser::setTwitterID(OptionalText twitterId) && noexcept {
    return std::move(setTwitterID(twitterId));
}
OrbinelUser&& OrbinelUser::setGender(OrbinelGender gender) && noexcept { return std::move(setGender(gender)); }
OrbinelUser&& OrbinelUser::setGender(std::int32_t gender) && noexcept { return std::move(setGender(gender)); }
OrbinelUser&& OrbinelUser::setBirthday(std::optional<Date> birthday) && noexcept {
    return std::move(setBirthday(birthday));
}
OrbinelUser&& OrbinelUser::setAge(std::int32_t age) && noexcept { return std::move(setAge(age)); }
OrbinelUser&& OrbinelUser::setEmail(OptionalText email) && noexcept { return std::move(setEmail(email)); }
OrbinelUser&& OrbinelUser::setPhoneNumber(OptionalText phoneNumber) && noexcept {
    return std::move(setPhoneNumber(phoneNumber));
}
OrbinelUser&& OrbinelUser::setEmailOptin(bool optin) && noexcept { return std::move(setEmailOptin(optin)); }
OrbinelUser&& OrbinelUser::setSMSOptin(bool optin) && noexcept { return std::move(setSMSOptin(optin)); }
OrbinelUser&& OrbinelUser::setWhatsappOptin(bool optin) && noexcept { return std::move(setWhatsappOptin(optin)); }
OrbinelUser&& OrbinelUser::setPushOptin(bool optin) && noexcept { return std::move(setPushOptin(optin)); }
OrbinelUser&& OrbinelUser::setLocationOptin(bool optin) && noexcept { return std::move(setLocationOptin(optin)); }
OrbinelUser&& OrbinelUser::setCustomAttributeWithString(OptionalText name, OptionalText value) && noexcept {
    return std::move(setCustomAttributeWithString(name, value));
}
OrbinelUser&& OrbinelUser::setCustomAttributeWithInt(OptionalText name, std::int32_t value) && noexcept {
    return std::move(setCustomAttributeWithInt(name, value));
}
OrbinelUser&& OrbinelUser::setCustomAttributeWithDouble(OptionalText name, double value) && noexcept {
    return std::move(setCustomAttributeWithDouble(name, value));
}
OrbinelUser&& OrbinelUser::setCustomAttributeWithBoolean(OptionalText name, bool value) && noexcept {
    return std::move(setCustomAttributeWithBoolean(name, value));
}
OrbinelUser&& OrbinelUser::setCustomAttributeWithDate(OptionalText name, std::optional<Date> value) && noexcept {
    return std::move(setCustomAttributeWithDate(name, value));
}
OrbinelUser&& OrbinelUser::setCustomAttributeWithArray(OptionalText name, const Array& value) && noexcept {
    return std::move(setCustomAttributeWithArray(name, value));
}
OrbinelUser&& OrbinelUser::unsetCustomAttribute(OptionalText name) && noexcept {
    return std::move(unsetCustomAttribute(name));
}

// --- Who the user is ---

void OrbinelUser::login(const OrbinelIdentifiers& identifiers) const noexcept { login(identifiers, nullptr); }

void OrbinelUser::login(const OrbinelIdentifiers& identifiers,
                        std::function<void(const std::string& orbinelId)> orbinelIDResult) const noexcept {
    visit("-[OrbinelUser login:orbinelIDResult:]", [&](const UserAccess& access) {
        access.login.login(identifiers.getOrbinelIdentifiers(), std::move(orbinelIDResult));
    });
}

void OrbinelUser::logout() const noexcept {
    visit("-[OrbinelUser logout]", [](const UserAccess& access) { access.identity.logoutUser(); });
}

bool OrbinelUser::areIdentifiersAlreadyCached(const OrbinelIdentifiers& identifiers) const noexcept {
    bool cached = false;
    visit("-[OrbinelUser areIdentifiersAlreadyCached:]", [&](const UserAccess& access) {
        cached = access.identity.areIdentifiersAlreadyCached(identifiers.getOrbinelIdentifiers());
    });
    return cached;
}

}  // namespace orbinel
