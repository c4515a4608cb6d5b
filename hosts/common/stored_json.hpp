#pragma once

#include <string>
#include <utility>
#include <variant>

#include "base/sanitize.hpp"
#include "orbinel/platform/json.hpp"
#include "orbinel/value.hpp"

/// What stores of every host do alike (see platform/defaults.hpp).
namespace orbinel::hosts {

/// The value without what no store keeps inside a container. One that nests too deep cannot be stored and stays whole.
[[nodiscard]] inline Value withoutUnstorable(Value value) {
    if (isWithinDepth(value)) sanitizeValue(value);
    return value;
}

/// An element of an array as a reader sees it.
[[nodiscard]] inline Value parsedOrText(const std::string& json, const platform::Json& parser) {
    auto outcome = parser.parse(json);
    auto* value = std::get_if<Value>(&outcome);
    return value != nullptr ? std::move(*value) : Value(json);
}

}  // namespace orbinel::hosts
