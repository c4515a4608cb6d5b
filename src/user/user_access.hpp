#pragma once

#include "base/lifetime.hpp"
#include "base/reports.hpp"
#include "events/validation.hpp"
#include "user/identity.hpp"
#include "user/login.hpp"
#include "user/user_attributes.hpp"

namespace orbinel {

/// What the application's user objects and identifiers reach of the library, and hold weakly.
struct UserAccess {
    Reports& reports;
    const Validation& validation;
    OrbinelUserInternal& attributes;
    OrbinelIdentity& identity;
    Login& unification;
    const Lifetime& ownLifetime;

    [[nodiscard]] const Lifetime& lifetime() const noexcept { return ownLifetime; }
};

}  // namespace orbinel
