#pragma once

#include "base/special_objects.hpp"

namespace orbinel::tool {

/// How deep what stands in a trace entry may nest, so that the whole entry stays within what JSON may.
inline constexpr int deepestTraced = 500;

/// The value as the trace writes it.
[[nodiscard]] inline Value traceable(const Value& value) { return withSpecialObjects(value, deepestTraced); }

}  // namespace orbinel::tool
