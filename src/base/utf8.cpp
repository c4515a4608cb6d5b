#include "base/utf8.hpp"

#include <cstdint>
#include <cstring>

namespace orbinel {

namespace {

/// The length of the ASCII run that the text begins with, eight bytes at a time.
std::size_t asciiPrefix(std::string_view text) noexcept {
    std::size_t i = 0;
    for (; i + 8 <= text.size(); i += 8) {
        std::uint64_t block = 0;
        std::memcpy(&block, text.data() + i, sizeof block);
        if ((block & 0x8080808080808080U) != 0) break;
    }
    while (i < text.size() && static_cast<unsigned char>(text[i]) < 0x80) ++i;
    return i;
}

/// The length of the one character beyond ASCII that the text begins with; 0 where it is not a valid one.
std::size_t multiByteCharacter(std::string_view text) noexcept {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned first = byte(0);
    const std::size_t length = first >= 0xC2 && first <= 0xDF   ? 2
                               : first >= 0xE0 && first <= 0xEF ? 3
                               : first >= 0xF0 && first <= 0xF4 ? 4
                                                                : 0;
    if (length == 0 || text.size() < length) return 0;
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xC0U) != 0x80U) return 0;
    }
    const unsigned second = byte(1);
    const bool overlong = (first == 0xE0 && second < 0xA0) || (first == 0xF0 && second < 0x90);
    const bool outOfRange = (first == 0xED && second > 0x9F) || (first == 0xF4 && second > 0x8F);
    return overlong || outOfRange ? 0 : length;
}

}  // namespace

bool isAscii(std::string_view text) noexcept { return asciiPrefix(text) == text.size(); }

std::size_t utf16Length(std::string_view text) noexcept {
    std::size_t units = 0;
    while (!text.empty()) {
        const auto ascii = asciiPrefix(text);
        units += ascii;
        text.remove_prefix(ascii);
        if (text.empty()) break;
        const auto length = multiByteCharacter(text);
        units += length == 4 ? 2 : 1;
        text.remove_prefix(length > 0 ? length : 1);
    }
    return units;
}

bool isValidUtf8(std::string_view text) noexcept {
    for (;;) {
        text.remove_prefix(asciiPrefix(text));
        if (text.empty()) return true;
        const auto length = multiByteCharacter(text);
        if (length == 0) return false;
        text.remove_prefix(length);
    }
}

}  // namespace orbinel
