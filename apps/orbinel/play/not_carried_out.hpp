#pragma once

#include <stdexcept>

namespace orbinel::tool {

/// Why a step could not be carried out: a clause.
struct NotCarriedOut : std::runtime_error {
    using std::runtime_error::runtime_error;
};

}  // namespace orbinel::tool
