#pragma once

#include "base/reports.hpp"
#include "events/validation.hpp"
#include "user/identity.hpp"
#include "user/login.hpp"
#include "user/user_attributes.hpp"

namespace orbinel {

/// What the application's user objects and identifiers reach of the library.
struct UserAccess {
    Reports& reports;
    const Validation& validation;
    OrbinelUserInternal& attributes;
    OrbinelIdentity& identity;
    Login& login;
};

}  // namespace orbinel
