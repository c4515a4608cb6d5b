#pragma once

#include <compare>
#include <cstdint>
#include <string>

namespace shop {

/// An amount in euros, exact to the cent.
struct Money {
    std::int64_t cents = 0;

    friend constexpr auto operator<=>(Money, Money) = default;
    friend constexpr Money operator+(Money one, Money other) { return {one.cents + other.cents}; }
    friend constexpr Money operator-(Money one, Money other) { return {one.cents - other.cents}; }
    friend constexpr Money operator*(Money one, int count) { return {one.cents * count}; }

    /// What is left of it, half a cent rounded up.
    [[nodiscard]] constexpr Money reducedBy(int percent) const { return {(cents * (100 - percent) + 50) / 100}; }

    [[nodiscard]] constexpr double euros() const { return static_cast<double>(cents) / 100; }

    /// As people read it, such as "9.50 €".
    [[nodiscard]] std::string text() const;
};

inline constexpr const char* currency = "EUR";

}  // namespace shop
