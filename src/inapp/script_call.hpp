#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace orbinel {

/// The script with which the library speaks to a page: "sdkCallbackMethod(type, json)". The JSON stays the same value,
/// but nothing in it can end the call, a line of the script or a script element: "<" and the separators U+2028 and
/// U+2029, which JSON allows in its texts and older scripts do not, are written as escapes.
[[nodiscard]] std::string sdkCallbackMethod(std::int32_t messageType, std::string_view json);

}  // namespace orbinel
