#include "session/encryptor.hpp"

#include <algorithm>
#include <cstdint>

#include "base/guard.hpp"
#include "base/utf8.hpp"

namespace orbinel {

namespace {

constexpr std::uint64_t firstKeyMultiplier = ORBINEL_KEY_MULTIPLIER_1;
constexpr std::uint64_t secondKeyMultiplier = ORBINEL_KEY_MULTIPLIER_2;
static_assert(firstKeyMultiplier > 0 && secondKeyMultiplier > 0);

/// The key repeated to a few hundred bytes, so that long texts are scrambled in long runs.
std::string repeated(const std::string& key) {
    constexpr std::size_t enough = 512;
    std::string run;
    run.reserve(enough + key.size());
    while (run.size() < enough) run += key;
    return run;
}

/// XORs every unit with the key's unit at the same place, the key repeated. Both are plain ASCII, so a unit is a byte.
void scramble(std::string& text, const std::string& key) {
    const auto run = repeated(key);
    for (std::size_t start = 0; start < text.size(); start += run.size()) {
        const auto length = std::min(run.size(), text.size() - start);
        char* out = text.data() + start;
        for (std::size_t i = 0; i < length; ++i) out[i] = static_cast<char>(out[i] ^ run[i]);
    }
}

}  // namespace

Dictionary OrbinelEncryptor::getEncryptedPayloadForData(std::string_view json,
                                                        std::string_view timestamp) const noexcept {
    return guarded(reports_, "+[OrbinelEncryptor getEncryptedPayloadForData:timestamp:]", Dictionary(), [&] {
        auto text = base64_.encode(json);
        scramble(text, getTheMagicalKey(timestamp));
        Dictionary envelope;
        envelope.set("payload", base64_.encode(text));
        return envelope;
    });
}

std::optional<std::string> OrbinelEncryptor::decryptPayload(std::string_view payload,
                                                            std::string_view timestamp) const noexcept {
    return guarded(reports_, "+[OrbinelEncryptor decryptPayload:timestamp:]", std::optional<std::string>(), [&] {
        auto text = base64_.decode(payload);
        // A character beyond ASCII cannot come of scrambling base64, and stays beyond it when it is scrambled again.
        if (!text || !isAscii(*text)) return std::optional<std::string>();
        scramble(*text, getTheMagicalKey(timestamp));
        auto plain = base64_.decode(*text);
        return plain && isValidUtf8(*plain) ? plain : std::nullopt;
    });
}

std::string OrbinelEncryptor::getTheMagicalKey(std::string_view timestamp) {
    std::uint64_t accumulator = 0;
    for (std::size_t i = 0; i < timestamp.size(); ++i) {
        const char character = timestamp[i];
        const std::uint64_t n =
            (character >= '0' && character <= '9' ? static_cast<std::uint64_t>(character - '0') : 0) + 1;
        const auto shift = n % 3;
        switch (i % 4) {
            case 0:
                accumulator |= n * firstKeyMultiplier;
                break;
            case 1:
                accumulator <<= shift;
                break;
            case 2:
                accumulator ^= n * secondKeyMultiplier;
                break;
            default:
                accumulator >>= shift;
                break;
        }
    }
    return std::to_string(accumulator);
}

}  // namespace orbinel
