#include "hosts/common/glib_base64.hpp"

#include <glib.h>

#include <algorithm>

namespace orbinel::hosts {

namespace {

bool isOfAlphabet(char c) noexcept { return g_ascii_isalnum(c) || c == '+' || c == '/'; }

/// Whether the last character before the padding has zeros where no byte is left to take its bits.
bool hasNoStrayBits(char last, std::size_t padding) noexcept {
    constexpr std::string_view withoutLowTwoBits = "AEIMQUYcgkosw048";
    constexpr std::string_view withoutLowFourBits = "AQgw";
    if (padding == 0) return true;
    return (padding == 1 ? withoutLowTwoBits : withoutLowFourBits).find(last) != std::string_view::npos;
}

bool isBase64(std::string_view text) noexcept {
    if (text.size() % 4 != 0) return false;
    const auto end = text.find('=');
    const auto digits = text.substr(0, end);
    const auto padding = text.size() - digits.size();
    if (padding > 2 || text.substr(digits.size()).find_first_not_of('=') != std::string_view::npos) return false;
    if (!std::all_of(digits.begin(), digits.end(), isOfAlphabet)) return false;
    return digits.empty() || hasNoStrayBits(digits.back(), padding);
}

}  // namespace

std::string GlibBase64::encode(std::string_view bytes) const noexcept {
    std::string text((bytes.size() / 3 + 1) * 4 + 4, '\0');  // what GLib asks for
    gint state = 0;
    gint save = 0;
    auto length = g_base64_encode_step(reinterpret_cast<const guchar*>(bytes.data()), bytes.size(), FALSE, text.data(),
                                       &state, &save);
    length += g_base64_encode_close(FALSE, text.data() + length, &state, &save);
    text.resize(length);
    return text;
}

std::optional<std::string> GlibBase64::decode(std::string_view text) const noexcept {
    if (!isBase64(text)) return std::nullopt;
    std::string bytes(text.size() / 4 * 3 + 3, '\0');  // what GLib asks for
    gint state = 0;
    guint save = 0;
    bytes.resize(
        g_base64_decode_step(text.data(), text.size(), reinterpret_cast<guchar*>(bytes.data()), &state, &save));
    return bytes;
}

}  // namespace orbinel::hosts
