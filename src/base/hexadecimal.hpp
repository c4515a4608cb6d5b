#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace orbinel {

/// Two digits a byte.
[[nodiscard]] inline std::string lowerCaseHex(std::span<const std::uint8_t> bytes) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    text.reserve(bytes.size() * 2);
    for (const auto byte : bytes) text += {digits[byte >> 4U], digits[byte & 15U]};
    return text;
}

}  // namespace orbinel
