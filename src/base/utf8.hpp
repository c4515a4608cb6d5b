#pragma once

#include <cstddef>
#include <string_view>

namespace orbinel {

[[nodiscard]] bool isAscii(std::string_view text) noexcept;

/// Whether the bytes are UTF-8 (RFC 3629): no overlong forms, no surrogates, nothing above U+10FFFF.
[[nodiscard]] bool isValidUtf8(std::string_view text) noexcept;

/// How many UTF-16 code units the text has; a byte that is not valid UTF-8 counts as one.
[[nodiscard]] std::size_t utf16Length(std::string_view text) noexcept;

}  // namespace orbinel
