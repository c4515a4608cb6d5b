#pragma once

#include <optional>
#include <string>

#include "orbinel/platform/json.hpp"
#include "orbinel/value.hpp"

/// How a delivered value is read as a text; base/number_reading.hpp tells how as a number or a switch.
namespace orbinel::content_value {

/// Text as it is; booleans, numbers and containers as compact JSON. Nothing for null, a date and an absent value.
[[nodiscard]] std::optional<std::string> textValue(const Value& value, const platform::Json& json);

}  // namespace orbinel::content_value
