#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "orbinel/platform/json.hpp"
#include "orbinel/platform/scheduler.hpp"
#include "orbinel/value.hpp"

/// Reads what a page sends: forms give most of it as texts, whatever it is meant to be.
namespace orbinel::template_values {

/// A number as it is, a boolean as 1 or 0, a text by the number that it begins with; 0 for everything else.
[[nodiscard]] double numberOf(const Value& value) noexcept;

/// The same, truncated toward zero and held within 32 bits.
[[nodiscard]] std::int32_t integerOf(const Value& value) noexcept;

/// A boolean as it is, a number other than zero as true, and of the texts those that begin with "y", "t" (in any letter
/// case) or a digit from 1 to 9.
[[nodiscard]] bool booleanOf(const Value& value) noexcept;

/// A text as it is, a number in digits, a boolean as "1" or "0", a container as JSON; otherwise the empty text.
[[nodiscard]] std::string textOf(const Value& value, const platform::Json& json);

/// A moment: "yyyy-MM-dd'T'HH:mm:ss.SSS'Z'" with the digits of the device's local time, as the library writes it, or
/// seconds since 1970; nothing for everything else.
[[nodiscard]] std::optional<Date> dateOf(const Value& value, const platform::Scheduler& scheduler);

/// One attribute or parameter that a page sets: {"type", "key", "value"}.
struct Descriptor {
    std::string_view type;
    std::string_view key;
    const Value& value;
};

/// Reads a descriptor, whose texts it refers to; nothing where it is none, or has no key or no value.
[[nodiscard]] std::optional<Descriptor> descriptorOf(const Value& value) noexcept;

}  // namespace orbinel::template_values
