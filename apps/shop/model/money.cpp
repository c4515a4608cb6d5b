#include "shop/model/money.hpp"

#include <array>
#include <cstdio>
#include <cstdlib>

namespace shop {

std::string Money::text() const {
    std::array<char, 40> digits{};
    const auto amount = std::abs(cents);
    std::snprintf(digits.data(), digits.size(), "%s%lld.%02lld\u00a0€", cents < 0 ? "−" : "",
                  static_cast<long long>(amount / 100), static_cast<long long>(amount % 100));
    return digits.data();
}

}  // namespace shop
