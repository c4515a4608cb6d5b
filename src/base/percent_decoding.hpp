#pragma once

#include <string>
#include <string_view>

namespace orbinel {

/// Takes the next byte off the text, which is not empty: what stands there, or what "%" with two hexadecimal digits
/// stands for. A "%" without them stays as it is.
[[nodiscard]] char takePercentDecodedByte(std::string_view& text) noexcept;

/// The text without its percent-encoding (RFC 3986, section 2.1), which may be no UTF-8. "+" stays as it is.
[[nodiscard]] std::string percentDecoded(std::string_view text);

}  // namespace orbinel
