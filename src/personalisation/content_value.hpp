#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "orbinel/platform/json.hpp"
#include "orbinel/value.hpp"

/// How a delivered value is read as the type that the application asks for. Nothing where there is no such reading.
namespace orbinel::content_value {

/// Text as it is; booleans, numbers and containers as compact JSON.
[[nodiscard]] std::optional<std::string> textValue(const Value& value, const platform::Json& json);

/// A number truncated toward zero, a boolean as 0 or 1, the whole number that a text begins with (white space before
/// it is skipped; 0 where there is none); held within 32 bits. NaN is 0.
[[nodiscard]] std::optional<std::int32_t> intValue(const Value& value) noexcept;

/// A number other than zero (NaN is false), or a text that, after white space, a sign and zeros, goes on with one of
/// "YyTt" or a digit.
[[nodiscard]] std::optional<bool> boolValue(const Value& value) noexcept;

}  // namespace orbinel::content_value
