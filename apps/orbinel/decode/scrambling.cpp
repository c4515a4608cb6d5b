#include "apps/orbinel/decode/scrambling.hpp"

#include <glib.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <optional>

namespace orbinel::tool {
namespace {

constexpr std::uint64_t multiplier1 = ORBINEL_KEY_MULTIPLIER_1;
constexpr std::uint64_t multiplier2 = ORBINEL_KEY_MULTIPLIER_2;

struct GFree {
    void operator()(void* memory) const { g_free(memory); }
};

std::string toBase64(std::string_view bytes) {
    const std::unique_ptr<gchar, GFree> text(
        g_base64_encode(reinterpret_cast<const guchar*>(bytes.data()), bytes.size()));
    return text.get();
}

std::optional<std::string> fromBase64(std::string_view text) {
    const std::string terminated(text);
    gsize size = 0;
    const std::unique_ptr<guchar, GFree> bytes(g_base64_decode(terminated.c_str(), &size));
    std::string decoded(reinterpret_cast<const char*>(bytes.get()), size);
    // GLib skips what does not belong to the alphabet; only text that comes out the same again had nothing of it.
    if (toBase64(decoded) != text) return std::nullopt;
    return decoded;
}

std::string crossed(std::string text, std::string_view key) {
    for (std::size_t i = 0; i < text.size(); ++i) text[i] = static_cast<char>(text[i] ^ key[i % key.size()]);
    return text;
}

}  // namespace

std::string requestKey(std::string_view timestamp) {
    std::uint64_t sum = 0;
    for (std::size_t i = 0; i < timestamp.size(); ++i) {
        const char digit = timestamp[i];
        const std::uint64_t n = (digit >= '0' && digit <= '9' ? static_cast<std::uint64_t>(digit - '0') : 0) + 1;
        switch (i % 4) {
            case 0:
                sum |= n * multiplier1;
                break;
            case 1:
                sum <<= n % 3;
                break;
            case 2:
                sum ^= n * multiplier2;
                break;
            default:
                sum >>= n % 3;
                break;
        }
    }
    return std::to_string(sum);
}

std::string scramble(std::string_view text, std::string_view timestamp) {
    return toBase64(crossed(toBase64(text), requestKey(timestamp)));
}

std::variant<std::string, Failure> unscramble(std::string_view scrambled, std::string_view timestamp) {
    if (scrambled.empty()) return Failure{"the scrambled text is empty"};
    auto outer = fromBase64(scrambled);
    if (!outer) return Failure{"the scrambled text is not base64"};
    if (std::any_of(outer->begin(), outer->end(), [](char c) { return static_cast<unsigned char>(c) >= 128; })) {
        return Failure{"the scrambled text holds characters that scrambling cannot give"};
    }
    auto plain = fromBase64(crossed(*std::move(outer), requestKey(timestamp)));
    if (!plain) {
        return Failure{"what comes out with the time stamp \"" + std::string(timestamp) +
                       "\" is not base64, so the time stamp is probably another one"};
    }
    return *std::move(plain);
}

}  // namespace orbinel::tool
