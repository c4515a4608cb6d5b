#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "orbinel/platform/json.hpp"
#include "orbinel/platform/scheduler.hpp"
#include "orbinel/value.hpp"

/// Reads what a page sends: forms give most of it as texts, whatever it is meant to be. Numbers and switches are read
/// by base/number_reading.hpp.
namespace orbinel::template_values {

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
