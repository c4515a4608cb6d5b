#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

/// What a page says to the library stands in the URL of a navigation that never takes place.
namespace orbinel::template_payload {

inline constexpr std::string_view scheme = "orbinelurl://";
inline constexpr std::size_t longestText = std::size_t{1} << 20U;  // bytes, decoded

/// The URL without its percent-encoding and without any occurrence of the scheme; nothing where that is longer than
/// `longestText`. A "%" without two hexadecimal digits stays as it is. Time is linear in the text, and bounded.
[[nodiscard]] std::optional<std::string> decode(std::string_view url);

}  // namespace orbinel::template_payload
