#pragma once

#include "base/reports.hpp"
#include "events/validation.hpp"
#include "session/helper.hpp"

namespace orbinel {

/// What a product that the application holds needs of the running library.
struct ProductAccess {
    Reports& reports;
    OrbinelHelper& helper;
    const Validation& validation;
};

}  // namespace orbinel
