#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "orbinel/platform/json.hpp"
#include "orbinel/value.hpp"

namespace orbinel::hosts {

/// A value as it stands in a database: its kind and a number or text. Containers are JSON; a missing number is NaN,
/// which databases do not know.
struct StoredValue {
    std::string kind;
    std::variant<std::monostate, std::int64_t, double, std::string> content;
};

/// Nothing where the value is absent or nests too deep.
[[nodiscard]] std::optional<StoredValue> encodeValue(const Value& value, const platform::Json& json);

/// Nothing where it is not what `encodeValue` makes.
[[nodiscard]] std::optional<Value> decodeValue(const StoredValue& stored, const platform::Json& json);

}  // namespace orbinel::hosts
