#pragma once

#include <optional>

#include "orbinel/value.hpp"

namespace orbinel::c_interface {

/// Nothing for null.
[[nodiscard]] inline std::optional<Date> dateOf(const double* secondsSince1970) noexcept {
    return secondsSince1970 != nullptr ? std::optional(Date{*secondsSince1970}) : std::nullopt;
}

}  // namespace orbinel::c_interface
