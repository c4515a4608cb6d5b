#pragma once

#include <string>

#include "orbinel/value.hpp"

namespace orbinel::testing {

/// What a backend understands of a request's body: unscrambled where it is an envelope, by the time stamp of the
/// header "ts"; empty where it is no dictionary.
[[nodiscard]] Dictionary payloadOf(const std::string& body, const std::string& timestamp);

}  // namespace orbinel::testing
