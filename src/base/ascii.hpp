#pragma once

#include <algorithm>
#include <string>
#include <string_view>

/// Characters of ASCII, independent of any locale; every other byte is none of them and stays as it is.
namespace orbinel::ascii {

[[nodiscard]] constexpr bool isDigit(char c) noexcept { return c >= '0' && c <= '9'; }
[[nodiscard]] constexpr bool isLowerLetter(char c) noexcept { return c >= 'a' && c <= 'z'; }
[[nodiscard]] constexpr bool isUpperLetter(char c) noexcept { return c >= 'A' && c <= 'Z'; }
[[nodiscard]] constexpr bool isLetter(char c) noexcept { return isLowerLetter(c) || isUpperLetter(c); }
[[nodiscard]] constexpr bool isLetterOrDigit(char c) noexcept { return isLetter(c) || isDigit(c); }
[[nodiscard]] constexpr bool isHexadecimalLetter(char c) noexcept {
    return (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}
[[nodiscard]] constexpr bool isHexadecimalDigit(char c) noexcept { return isDigit(c) || isHexadecimalLetter(c); }

[[nodiscard]] constexpr char lowerCased(char c) noexcept {
    return isUpperLetter(c) ? static_cast<char>(c - 'A' + 'a') : c;
}

[[nodiscard]] inline std::string lowerCased(std::string_view text) {
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(), [](char c) { return lowerCased(c); });
    return lower;
}

/// Whether the text begins with these words, which are in lower case, in any letter case.
[[nodiscard]] inline bool beginsWith(std::string_view text, std::string_view lowerCaseWords) noexcept {
    return text.size() >= lowerCaseWords.size() &&
           std::equal(lowerCaseWords.begin(), lowerCaseWords.end(), text.begin(),
                      [](char wanted, char c) { return lowerCased(c) == wanted; });
}

}  // namespace orbinel::ascii
