#include "base/percent_decoding.hpp"

namespace orbinel {

namespace {

constexpr int notHexadecimal = -1;

constexpr int hexadecimal(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return notHexadecimal;
}

}  // namespace

char takePercentDecodedByte(std::string_view& text) noexcept {
    const char first = text.front();
    if (first == '%' && text.size() >= 3) {
        const int high = hexadecimal(text[1]);
        const int low = hexadecimal(text[2]);
        if (high != notHexadecimal && low != notHexadecimal) {
            text.remove_prefix(3);
            return static_cast<char>(high * 16 + low);
        }
    }
    text.remove_prefix(1);
    return first;
}

std::string percentDecoded(std::string_view text) {
    std::string decoded;
    decoded.reserve(text.size());
    while (!text.empty()) decoded += takePercentDecodedByte(text);
    return decoded;
}

}  // namespace orbinel
