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

// Ascending. Every character in it, and its small form, takes two bytes.
constexpr std::array capitals{
    Capitals{0x0C0, 0x0D6, 1, 32},   Capitals{0x0D8, 0x0DE, 1, 32}, Capitals{0x100, 0x12E, 2, 1},
    Capitals{0x132, 0x136, 2, 1},    Capitals{0x139, 0x147, 2, 1},  Capitals{0x14A, 0x176, 2, 1},
    Capitals{0x178, 0x178, 1, -121}, Capitals{0x179, 0x17D, 2, 1},  Capitals{0x386, 0x386, 1, 38},
    Capitals{0x388, 0x38A, 1, 37},   Capitals{0x38C, 0x38C, 1, 64}, Capitals{0x38E, 0x38F, 1, 63},
    Capitals{0x391, 0x3A1, 1, 32},   Capitals{0x3A3, 0x3AB, 1, 32}, Capitals{0x400, 0x40F, 1, 80},
    Capitals{0x410, 0x42F, 1, 32},   Capitals{0x460, 0x480, 2, 1},  Capitals{0x48A, 0x4BE, 2, 1},
    Capitals{0x4D0, 0x52E, 2, 1},
};

char32_t lowerCased(char32_t character) {
    const auto* range =
        std::find_if(capitals.begin(), capitals.end(), [&](const Capitals& one) { return character <= one.last; });
    if (range == capitals.end() || character < range->first || (character - range->first) % range->step != 0) {
        return character;
    }
    return static_cast<char32_t>(static_cast<std::int32_t>(character) + range->distance);
}

/// The character of two bytes that the text begins with; 0 where it begins with another.
char32_t twoByteCharacter(std::string_view text) {
    const auto first = static_cast<unsigned char>(text[0]);
    if (first < 0xC2 || first > 0xDF || text.size() < 2) return 0;
    const auto second = static_cast<unsigned char>(text[1]);
    return (second & 0xC0U) == 0x80U ? ((first & 0x1FU) << 6U) | (second & 0x3FU) : 0;
}

void append(std::string& text, char32_t twoByteCharacter) {
    text += static_cast<char>(0xC0U | (twoByteCharacter >> 6U));
    text += static_cast<char>(0x80U | (twoByteCharacter & 0x3FU));
}

}  // namespace

std::string lowerCased(std::string_view text) {
    std::string lower;
    lower.reserve(text.size());
    while (!text.empty()) {
        const auto character = twoByteCharacter(text);
        if (character == capitalIWithDot) {
            lower += "i\u0307";
        } else if (character != 0) {
            append(lower, lowerCased(character));
        } else {
            lower += ascii::lowerCased(text.front());
        }
        text.remove_prefix(character != 0 ? 2 : 1);
    }
    return lower;
}

}  // namespace orbinel
