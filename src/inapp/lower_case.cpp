#include "inapp/lower_case.hpp"

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>

#include "base/ascii.hpp"

namespace orbinel {

namespace {

constexpr char32_t capitalIWithDot = 0x130;  // its small form is two characters: i and a combining dot

/// Capital letters from `first` to `last`, every `step` of them, and how far their small forms are.
struct Capitals {
    std::uint16_t first;
    std::uint16_t last;
    std::uint8_t step;
    std::int16_t distance;
};

// Ascending. Every character in it takes two bytes, or three of which the first is E1.
constexpr std::array capitals{
    Capitals{0x0C0, 0x0D6, 1, 32},      Capitals{0x0D8, 0x0DE, 1, 32},  Capitals{0x100, 0x12E, 2, 1},
    Capitals{0x132, 0x136, 2, 1},       Capitals{0x139, 0x147, 2, 1},   Capitals{0x14A, 0x176, 2, 1},
    Capitals{0x178, 0x178, 1, -121},    Capitals{0x179, 0x17D, 2, 1},   Capitals{0x1A0, 0x1A4, 2, 1},
    Capitals{0x1AF, 0x1AF, 1, 1},       Capitals{0x1CD, 0x1DB, 2, 1},   Capitals{0x1DE, 0x1EE, 2, 1},
    Capitals{0x1F8, 0x21E, 2, 1},       Capitals{0x222, 0x232, 2, 1},   Capitals{0x386, 0x386, 1, 38},
    Capitals{0x388, 0x38A, 1, 37},      Capitals{0x38C, 0x38C, 1, 64},  Capitals{0x38E, 0x38F, 1, 63},
    Capitals{0x391, 0x3A1, 1, 32},      Capitals{0x3A3, 0x3AB, 1, 32},  Capitals{0x400, 0x40F, 1, 80},
    Capitals{0x410, 0x42F, 1, 32},      Capitals{0x460, 0x480, 2, 1},   Capitals{0x48A, 0x4BE, 2, 1},
    Capitals{0x4D0, 0x52E, 2, 1},       Capitals{0x531, 0x556, 1, 48},  Capitals{0x1E00, 0x1E94, 2, 1},
    Capitals{0x1E9E, 0x1E9E, 1, -7615}, Capitals{0x1EA0, 0x1EFE, 2, 1},
};

char32_t lowerCased(char32_t character) {
    const auto* range =
        std::find_if(capitals.begin(), capitals.end(), [&](const Capitals& one) { return character <= one.last; });
    if (range == capitals.end() || character < range->first || (character - range->first) % range->step != 0) {
        return character;
    }
    return static_cast<char32_t>(static_cast<std::int32_t>(character) + range->distance);
}

/// What a text begins with.
struct Character {
    char32_t code;
    std::size_t bytes;
};

/// Of a character that the table cannot hold, its first byte, with no code.
Character firstOf(std::string_view text) {
    const auto byte = [&](std::size_t at) { return static_cast<unsigned char>(at < text.size() ? text[at] : 0); };
    const auto continues = [&](std::size_t at) { return (byte(at) & 0xC0U) == 0x80U; };
    const auto bitsOf = [&](std::size_t at) { return char32_t{byte(at) & 0x3FU}; };
    if (byte(0) >= 0xC2 && byte(0) <= 0xDF && continues(1)) {
        return {(char32_t{byte(0) & 0x1FU} << 6U) | bitsOf(1), 2};
    }
    if (byte(0) == 0xE1 && continues(1) && continues(2)) return {0x1000U | (bitsOf(1) << 6U) | bitsOf(2), 3};
    return {0, 1};
}

void append(std::string& text, char32_t character) {
    if (character < 0x800) {
        text += static_cast<char>(0xC0U | (character >> 6U));
    } else {
        text += static_cast<char>(0xE0U | (character >> 12U));
        text += static_cast<char>(0x80U | ((character >> 6U) & 0x3FU));
    }
    text += static_cast<char>(0x80U | (character & 0x3FU));
}

}  // namespace

std::string lowerCased(std::string_view text) {
    std::string lower;
    lower.reserve(text.size());
    while (!text.empty()) {
        const auto [character, bytes] = firstOf(text);
        if (character == capitalIWithDot) {
            lower += "i\u0307";
        } else if (bytes > 1) {
            append(lower, lowerCased(character));
        } else {
            lower += ascii::lowerCased(text.front());
        }
        text.remove_prefix(bytes);
    }
    return lower;
}

}  // namespace orbinel
