#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "orbinel/export.hpp"
#include "orbinel/identifiers.hpp"
#include "orbinel/library_part.hpp"
#include "orbinel/optional_text.hpp"
#include "orbinel/value.hpp"

namespace orbinel {

struct UserAccess;

enum class OrbinelGender : std::int32_t { male = 0, female = 1, other = 2 };

/// The application's user: what is told of them by chained calls, and who they are.
///
///     Orbinel::getCurrentUser().setName("Ada").setAge(36).setCustomAttributeWithString("tier", "gold");
///
/// A handle: every user object and every copy of it speaks of the one user of the library that it came from. What is
/// told gathers until the running session ends, and is sent with it; a later value replaces an earlier one. A value
/// that is refused is skipped silently, except where a record is named; `Orbinel::setDevelopmentLog` may tell why.
/// Attributes pass no gate. What is set before a login that finds another person leaves with the session of the person
/// before: set attributes in the login's result. `Orbinel::getCurrentUser` begins with empty ones.
/// Nothing is thrown; before the library's start and after its shutdown nothing happens.
///
/// Threads: any.
class ORBINEL_API OrbinelUser {
public:
    explicit OrbinelUser(LibraryPart<const UserAccess> access) noexcept;

    // --- Standard attributes. ---

    /// Texts of at least one byte, UTF-8; bytes that are not are sent as U+FFFD.
    OrbinelUser& setName(OptionalText name) & noexcept;
    OrbinelUser&& setName(OptionalText name) && noexcept;
    OrbinelUser& setSurname(OptionalText surname) & noexcept;
    OrbinelUser&& setSurname(OptionalText surname) && noexcept;

    /// Free texts; a language tag of BCP 47, such as "tr", and a locale, such as "tr_TR", are what the vendor expects.
    OrbinelUser& setLanguage(OptionalText language) & noexcept;
    OrbinelUser&& setLanguage(OptionalText language) && noexcept;
    OrbinelUser& setLocale(OptionalText locale) & noexcept;
    OrbinelUser&& setLocale(OptionalText locale) && noexcept;

    /// The user's identifiers at social networks.
    OrbinelUser& setFacebookID(OptionalText facebookId) & noexcept;
    OrbinelUser&& setFacebookID(OptionalText facebookId) && noexcept;
    OrbinelUser& setTwitterID(OptionalText twitterId) & noexcept;
    OrbinelUser&& setTwitterID(OptionalText twitterId) && noexcept;

    /// By code: 0 is male, 1 is female, every other number is other.
    OrbinelUser& setGender(OrbinelGender gender) & noexcept;
    OrbinelUser&& setGender(OrbinelGender gender) && noexcept;
    OrbinelUser& setGender(std::int32_t gender) & noexcept;
    OrbinelUser&& setGender(std::int32_t gender) && noexcept;

    /// A moment; sent as "yyyy-MM-dd'T'HH:mm:ss.SSS'Z'" with the digits of the device's local time.
    OrbinelUser& setBirthday(std::optional<Date> birthday) & noexcept;
    OrbinelUser&& setBirthday(std::optional<Date> birthday) && noexcept;

    /// In years, 1 to 999.
    OrbinelUser& setAge(std::int32_t age) & noexcept;
    OrbinelUser&& setAge(std::int32_t age) && noexcept;

    /// Something before an "@", and after it something, a dot and something again, without line breaks. Any other text
    /// leaves a record in the diagnostic log.
    OrbinelUser& setEmail(OptionalText email) & noexcept;
    OrbinelUser&& setEmail(OptionalText email) && noexcept;

    /// A number of ITU-T E.164: a plus sign, then 2 to 15 ASCII digits of which the first is not zero. Any other text
    /// leaves a record in the diagnostic log.
    OrbinelUser& setPhoneNumber(OptionalText phoneNumber) & noexcept;
    OrbinelUser&& setPhoneNumber(OptionalText phoneNumber) && noexcept;

    /// Whether the user wishes to be written to by each of these ways.
    OrbinelUser& setEmailOptin(bool optin) & noexcept;
    OrbinelUser&& setEmailOptin(bool optin) && noexcept;
    OrbinelUser& setSMSOptin(bool optin) & noexcept;
    OrbinelUser&& setSMSOptin(bool optin) && noexcept;
    OrbinelUser& setWhatsappOptin(bool optin) & noexcept;
    OrbinelUser&& setWhatsappOptin(bool optin) && noexcept;

    /// Whether the user wishes pushes, and to be located. Kept across launches. Only while the device grants the
    /// permission: what it has granted is read at each activation, so that a call before the first one of a launch, or
    /// where the person has not been asked yet, is ignored, which the development log tells. `LinuxHost` and `GtkHost`
    /// know of no permission to locate, and `LinuxHost` of none for pushes: there these calls do nothing.
    OrbinelUser& setPushOptin(bool optin) & noexcept;
    OrbinelUser&& setPushOptin(bool optin) && noexcept;
    OrbinelUser& setLocationOptin(bool optin) & noexcept;
    OrbinelUser&& setLocationOptin(bool optin) && noexcept;

    // --- Custom attributes. A name is a lower-case ASCII letter followed by lower-case ASCII letters, digits and
    // underscores, of any length. ---

    /// Text of at least one byte.
    OrbinelUser& setCustomAttributeWithString(OptionalText name, OptionalText value) & noexcept;
    OrbinelUser&& setCustomAttributeWithString(OptionalText name, OptionalText value) && noexcept;

    /// A whole number, 1 to 99,999,999.
    OrbinelUser& setCustomAttributeWithInt(OptionalText name, std::int32_t value) & noexcept;
    OrbinelUser&& setCustomAttributeWithInt(OptionalText name, std::int32_t value) && noexcept;

    /// A finite number.
    OrbinelUser& setCustomAttributeWithDouble(OptionalText name, double value) & noexcept;
    OrbinelUser&& setCustomAttributeWithDouble(OptionalText name, double value) && noexcept;
    OrbinelUser& setCustomAttributeWithBoolean(OptionalText name, bool value) & noexcept;
    OrbinelUser&& setCustomAttributeWithBoolean(OptionalText name, bool value) && noexcept;

    /// A moment, sent as a birthday is.
    OrbinelUser& setCustomAttributeWithDate(OptionalText name, std::optional<Date> value) & noexcept;
    OrbinelUser&& setCustomAttributeWithDate(OptionalText name, std::optional<Date> value) && noexcept;

    /// Only the texts among the elements are kept; the list may become empty.
    OrbinelUser& setCustomAttributeWithArray(OptionalText name, const Array& value) & noexcept;
    OrbinelUser&& setCustomAttributeWithArray(OptionalText name, const Array& value) && noexcept;

    /// Removes an attribute, here and at the backend. One that is set again in the same session is still reported as
    /// removed, too.
    OrbinelUser& unsetCustomAttribute(OptionalText name) & noexcept;
    OrbinelUser&& unsetCustomAttribute(OptionalText name) && noexcept;

    // --- Who the user is. ---

    /// Asks the backend for the Orbinel ID of the person with these identifiers. Where that is another than the current
    /// one, the running session is closed and a new one opened under the new ID. Nothing happens without identifiers,
    /// with those of the last login, and while a consent is withheld or the library is switched off. When the backend
    /// gives no ID, the library asks again when the application next becomes active.
    void login(const OrbinelIdentifiers& identifiers) const noexcept;

    /// The same. `orbinelIDResult` is called at most once with the ID: on the main queue where a new session was opened
    /// (and its start answered), else on whichever thread the answer comes; at once, on the caller's thread, when the
    /// identifiers are those of the last login. It is not called where the backend gives no ID (the library then
    /// repeats the login by itself at the next activation, without a result, and until then a login does nothing);
    /// where a new session's start is not answered, switches the library off, or brings a message of a push or for a
    /// try; and where another login or a logout came later. Whoever has to know registers a listener
    /// (`Orbinel::registerOrbinelIDListenerWithSelector`).
    void login(const OrbinelIdentifiers& identifiers,
               std::function<void(const std::string& orbinelId)> orbinelIDResult) const noexcept;

    /// Forgets the identifiers of the last login. The Orbinel ID stays until the backend gives another.
    void logout() const noexcept;

    /// Whether these are the identifiers of the last login; never where there was none.
    [[nodiscard]] bool areIdentifiersAlreadyCached(const OrbinelIdentifiers& identifiers) const noexcept;

private:
    template <typename Step>
    void visit(const char* operation, Step&& step) const noexcept;
    void setText(const char* operation, std::string_view code, OptionalText value) const noexcept;
    void setFlag(const char* operation, std::string_view code, bool value) const noexcept;

    LibraryPart<const UserAccess> access_;
};

}  // namespace orbinel
