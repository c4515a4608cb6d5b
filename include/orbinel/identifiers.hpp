#pragma once

#include <memory>
#include <string_view>

#include "orbinel/export.hpp"
#include "orbinel/library_part.hpp"
#include "orbinel/optional_text.hpp"
#include "orbinel/value.hpp"

namespace orbinel {

struct UserAccess;

/// Who a user is, for a login: gathered by chained calls. What is refused is skipped silently, and a later value
/// replaces an earlier one of the same kind.
///
///     Orbinel::getCurrentUser().login(OrbinelIdentifiers().addEmail("ada@example.org").addUserID("42"));
///
/// A value of its own: copies do not show what is added to one another, and it needs no library that runs. Nothing is
/// thrown. Threads: any, one at a time for each object.
class ORBINEL_API OrbinelIdentifiers {
public:
    /// Refusals are told to the library that is started at this moment, if there is one.
    OrbinelIdentifiers() noexcept;
    explicit OrbinelIdentifiers(LibraryPart<const UserAccess> access) noexcept;

    /// Something before an "@", and after it something, a dot and something again, without line breaks; sent as "em".
    OrbinelIdentifiers& addEmail(OptionalText email) & noexcept;
    OrbinelIdentifiers&& addEmail(OptionalText email) && noexcept;

    /// A number of ITU-T E.164: a plus sign, then 2 to 15 ASCII digits of which the first is not zero; sent as "pn".
    OrbinelIdentifiers& addPhoneNumber(OptionalText phoneNumber) & noexcept;
    OrbinelIdentifiers&& addPhoneNumber(OptionalText phoneNumber) && noexcept;

    /// The application's own identifier of the user, of at least one byte; sent as "uuid".
    OrbinelIdentifiers& addUserID(OptionalText userId) & noexcept;
    OrbinelIdentifiers&& addUserID(OptionalText userId) && noexcept;

    /// An identifier of a kind that the application has agreed with the vendor. `key`: a lower-case ASCII letter, then
    /// lower-case ASCII letters, digits and underscores; sent as "c_" and the key. `identifier`: at least one byte.
    OrbinelIdentifiers& addCustomIdentifier(OptionalText key, OptionalText identifier) & noexcept;
    OrbinelIdentifiers&& addCustomIdentifier(OptionalText key, OptionalText identifier) && noexcept;

    /// A copy of what has been gathered, under the keys under which it is sent.
    [[nodiscard]] Dictionary getOrbinelIdentifiers() const noexcept;

private:
    void set(const char* operation, std::string_view prefix, OptionalText key, OptionalText identifier) noexcept;
    void refuseKey(std::string_view key) const noexcept;

    LibraryPart<const UserAccess> access_;
    std::shared_ptr<const Dictionary> identifiers_;  // never changed, only replaced; nothing while there are none
};

}  // namespace orbinel
