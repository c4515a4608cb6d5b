#include "base/percent_decoding.hpp"

#include "base/ascii.hpp"

namespace orbinel {

namespace {

/// What a hexadecimal digit stands for.
constexpr int hexadecimal(char c) { return ascii::isDigit(c) ? c - '0' : ascii::lowerCased(c) - 'a' + 10; }

}  // namespace

char takePercentDecodedByte(std::string_view& text) noexcept {
    const char first = text.front();
    const bool escape =
        first == '%' && text.size() >= 3 && ascii::isHexadecimalDigit(text[1]) && ascii::isHexadecimalDigit(text[2]);
    const char taken = escape ? static_cast<char>(hexadecimal(text[1]) * 16 + hexadecimal(text[2])) : first;
    text.remove_prefix(escape ? 3 : 1);
    return taken;
}

std::string percentDecoded(std::string_view text) {
    std::string decoded;
    decoded.reserve(text.size());
    while (!text.empty()) decoded += takePercentDecodedByte(text);
    return decoded;
}

}  // namespace orbinel
