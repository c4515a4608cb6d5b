#pragma once

#include <string>
#include <string_view>

#include "orbinel/data_types.hpp"
#include "orbinel/value.hpp"

namespace orbinel {

inline constexpr std::string_view kDataTypeUnknown = "unknown";

/// The name of a value's type. Only an exact 32-bit integer is an "int": every wider number, the integers of parsed
/// JSON among them, is a "double". Dictionaries and nothing are "unknown".
[[nodiscard]] std::string_view getDataTypeOfObject(const Value& value) noexcept;

/// The texts among the elements, in order.
[[nodiscard]] Array makeArrayValid(const Array& array);

/// The text without a leading "c_".
[[nodiscard]] std::string_view removeCustomPrefix(std::string_view text) noexcept;

/// The text, or the empty text where there is none.
[[nodiscard]] const std::string& validateString(const Value& value) noexcept;

/// Whether a container's direct members are texts, numbers (booleans included), null markers or containers; what is in
/// those is not looked at.
[[nodiscard]] bool isValidJSONObject(const Value& value) noexcept;
[[nodiscard]] bool isValidJSONObject(const Dictionary& dictionary) noexcept;
[[nodiscard]] bool isValidJSONValue(const Value& value) noexcept;

}  // namespace orbinel
