#pragma once

#include <cmath>
#include <cstdint>
#include <string>

#include "events/data_types.hpp"
#include "orbinel/optional_text.hpp"
#include "orbinel/value.hpp"

/// The rules for single parameters of an event: what is stored for a value, absent where nothing is.
namespace orbinel::event_parameters {

[[nodiscard]] inline Value ofText(OptionalText text) { return text.view().empty() ? Value() : Value(text.view()); }

/// Zero and negative numbers are dropped on purpose; `addParameters` keeps them.
[[nodiscard]] inline Value ofInt(std::int32_t number) { return number > 0 ? Value(number) : Value(); }

[[nodiscard]] inline Value ofDouble(double number) { return std::isfinite(number) ? Value(number) : Value(); }

[[nodiscard]] inline Value ofArray(const Array& array) { return makeArrayValid(array); }

}  // namespace orbinel::event_parameters
