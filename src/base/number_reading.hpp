#pragma once

#include <algorithm>
#include <concepts>
#include <cstdint>
#include <limits>
#include <optional>

#include "orbinel/value.hpp"

/// Values of which nobody vouches for the type, read as the number or the switch that they are meant to be: forms of
/// pages and panels of backends give texts for both. Nothing where there is no such reading (null, containers, dates).
namespace orbinel {

/// Truncated toward zero and held within the integer's range; NaN is 0.
template <std::signed_integral Integer>
[[nodiscard]] constexpr Integer held(double number) noexcept {
    using Limits = std::numeric_limits<Integer>;
    if (number <= static_cast<double>(Limits::min())) return Limits::min();
    if (number >= static_cast<double>(Limits::max())) return Limits::max();
    return number == number ? static_cast<Integer>(number) : 0;
}
template <std::signed_integral Integer>
[[nodiscard]] constexpr Integer held(std::int64_t number) noexcept {
    using Limits = std::numeric_limits<Integer>;
    return static_cast<Integer>(std::clamp<std::int64_t>(number, Limits::min(), Limits::max()));
}

/// A number as it is, a boolean as 1 or 0, a text by the decimal number that it begins with: white space before it is
/// skipped, a sign and an exponent belong to it, and it is 0 where there is none or it is beyond a double.
[[nodiscard]] std::optional<double> doubleValue(const Value& value) noexcept;

/// The same, held within 32 bits; a text by the whole number that it begins with, so without fraction and exponent.
[[nodiscard]] std::optional<std::int32_t> intValue(const Value& value) noexcept;

/// A boolean as it is, a number other than zero as true (NaN as false), and of the texts those that after white space,
/// a sign and zeros go on with one of "YyTt" or a digit.
[[nodiscard]] std::optional<bool> boolValue(const Value& value) noexcept;

}  // namespace orbinel
