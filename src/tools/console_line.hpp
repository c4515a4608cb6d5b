#pragma once

#include <string>
#include <string_view>

#include "orbinel/platform/json.hpp"
#include "orbinel/value.hpp"

namespace orbinel {

/// The text on one line: each line break becomes one space, together with the white space beside it. JSON that was
/// indented stays the same JSON.
[[nodiscard]] std::string onOneLine(std::string_view text);

/// A dictionary as compact JSON, without what JSON cannot hold.
[[nodiscard]] std::string jsonOnOneLine(const platform::Json& json, Dictionary dictionary);

}  // namespace orbinel
