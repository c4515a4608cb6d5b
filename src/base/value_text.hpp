#pragma once

#include <string>

#include "orbinel/value.hpp"

namespace orbinel {

/// A value as a person reads it in a log: texts bare at the top and quoted inside containers, whole numbers without a
/// fraction, control characters escaped so that it stays one line, cut with "…" beyond `limit` bytes.
[[nodiscard]] std::string textOf(const Value& value, std::size_t limit = 2000);
[[nodiscard]] std::string textOf(const Dictionary& dictionary, std::size_t limit = 2000);

}  // namespace orbinel
