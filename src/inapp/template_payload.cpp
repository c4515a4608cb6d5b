#include "inapp/template_payload.hpp"

namespace orbinel::template_payload {

namespace {

constexpr int notHexadecimal = -1;

constexpr int hexadecimal(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return notHexadecimal;
}

/// Takes the next byte off the text, which is not empty.
char takeByte(std::string_view& text) {
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

std::string withoutScheme(std::string_view text) {
    std::string rest;
    rest.reserve(text.size());
    for (;;) {
        const auto found = text.find(scheme);
        rest += text.substr(0, found);
        if (found == std::string_view::npos) return rest;
        text.remove_prefix(found + scheme.size());
    }
}

}  // namespace

std::optional<std::string> decode(std::string_view url) {
    constexpr auto longestDecoded = longestText + scheme.size();
    std::string decoded;
    decoded.reserve(url.size() < longestDecoded ? url.size() : longestDecoded);
    while (!url.empty()) {
        if (decoded.size() == longestDecoded) return std::nullopt;
        decoded += takeByte(url);
    }
    auto payload = withoutScheme(decoded);
    return payload.size() <= longestText ? std::optional(std::move(payload)) : std::nullopt;
}

}  // namespace orbinel::template_payload
