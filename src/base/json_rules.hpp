#pragma once

#include "orbinel/value.hpp"

namespace orbinel {

/// Whether a dictionary can be sent as JSON to its last leaf: nothing in it is a date, an absent value, NaN or an
/// infinity, and it nests no deeper than `maximumValueDepth`.
[[nodiscard]] bool isValidJsonDeeply(const Dictionary& dictionary) noexcept;
[[nodiscard]] bool isValidJsonDeeply(const Value& value) noexcept;

}  // namespace orbinel
