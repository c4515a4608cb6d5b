#pragma once

#include "base/lifetime.hpp"
#include "base/reports.hpp"
#include "events/validation.hpp"
#include "session/helper.hpp"

namespace orbinel {

/// What a product that the application holds needs of the running library.
struct ProductAccess {
    Reports& reports;
    OrbinelHelper& helper;
    const Validation& validation;
    const Lifetime& ownLifetime;

    [[nodiscard]] const Lifetime& lifetime() const noexcept { return ownLifetime; }
};

}  // namespace orbinel
