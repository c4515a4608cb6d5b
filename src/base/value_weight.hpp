#pragma once

#include <cstddef>

#include "orbinel/value.hpp"

namespace orbinel {

/// About how many bytes the value takes when it is sent.
[[nodiscard]] std::size_t weightOf(const Value& value) noexcept;
[[nodiscard]] std::size_t weightOf(const Dictionary& dictionary) noexcept;

}  // namespace orbinel
