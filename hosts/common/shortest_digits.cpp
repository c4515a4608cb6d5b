#include "hosts/common/shortest_digits.hpp"

#include <charconv>
#include <cmath>
#include <cstdlib>
#include <iterator>

namespace orbinel::hosts {

ShortestDigits::ShortestDigits(double number) noexcept {
    if (writeShortDecimal(number)) return;
    size_ = static_cast<std::size_t>(std::to_chars(begin_, std::end(begin_), number).ptr - begin_);
}

/// Prices and the like have few digits, and are found faster by trying. The whole number and the power of ten are both
/// exact here, so that their quotient is the double nearest to the decimal: where it is the number, and fewer places
/// have not done, those digits are the fewest.
bool ShortestDigits::writeShortDecimal(double number) noexcept {
    constexpr double largest = 1e11;
    if (!(std::abs(number) < largest)) return false;
    std::int64_t power = 1;
    for (int places = 1; places <= 3; ++places) {
        power *= 10;
        const auto scale = static_cast<double>(power);
        const auto whole = static_cast<std::int64_t>(number * scale + (number < 0 ? -0.5 : 0.5));
        if (static_cast<double>(whole) / scale != number) continue;
        write(whole, places, power);
        return true;
    }
    return false;
}

void ShortestDigits::write(std::int64_t whole, int places, std::int64_t power) noexcept {
    auto* at = begin_;
    if (whole < 0) *at++ = '-';
    const auto magnitude = std::abs(whole);
    at = std::to_chars(at, std::end(begin_), magnitude / power).ptr;
    *at = '.';
    auto fraction = magnitude % power;
    for (int place = places; place > 0; --place, fraction /= 10) at[place] = static_cast<char>('0' + fraction % 10);
    size_ = static_cast<std::size_t>(at + places + 1 - begin_);
}

}  // namespace orbinel::hosts
