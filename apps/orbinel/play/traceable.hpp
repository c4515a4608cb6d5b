#pragma once

#include "orbinel/value.hpp"

namespace orbinel::tool {

/// How deep what stands in a trace entry may nest, so that the whole entry stays within what JSON may.
inline constexpr int deepestTraced = 500;

/// The value as the trace writes it: JSON, with the special objects of scenarios for what JSON does not have. What
/// nests deeper than the trace can is left out, with a text in its place.
[[nodiscard]] Value traceable(const Value& value, int depth = deepestTraced);

}  // namespace orbinel::tool
