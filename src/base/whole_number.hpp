#pragma once

#include <cstdint>
#include <optional>

#include "orbinel/value.hpp"

namespace orbinel {

/// A value of the backend's read as a whole number: a number truncated toward zero, a boolean as 1 or 0, a text that is
/// digits with at most a minus before them. Nothing for every other value, and for a text beyond 64 bits.
[[nodiscard]] std::optional<std::int64_t> wholeNumberOf(const Value& value) noexcept;

/// The same, where a text counts as far as it is such a number: "7.9" is 7.
[[nodiscard]] std::optional<std::int64_t> leadingWholeNumberOf(const Value& value) noexcept;

/// `wholeNumberOf` held within 32 bits; 0 where there is none.
[[nodiscard]] std::int32_t int32Of(const Value& value) noexcept;

}  // namespace orbinel
