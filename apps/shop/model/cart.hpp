#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "shop/model/catalogue.hpp"
#include "shop/model/changes.hpp"
#include "shop/model/terms.hpp"

namespace shop {

struct CartLine {
    const Product* product = nullptr;
    int quantity = 1;
};

struct CartTotals {
    Money goods;     // at today's prices
    Money saved;     // against the usual prices
    Money delivery;  // nothing for an empty cart
    Money total;
    Money untilFreeDelivery;  // nothing once it is free
};

/// What the person is about to buy: each product once, in the order in which they were first added.
class Cart {
public:
    static constexpr int mostOfOne = 99;

    explicit Cart(const Catalogue& catalogue) : catalogue_(catalogue) {}

    /// False, and nothing changes, for a product that the shop does not sell and where there would be too many of it.
    bool add(std::string_view productId, int count = 1);

    /// Held between 1 and `mostOfOne`; nothing for what is not in the cart.
    void setQuantity(std::string_view productId, int quantity);
    void remove(std::string_view productId);
    void clear();

    [[nodiscard]] const std::vector<CartLine>& lines() const { return lines_; }
    [[nodiscard]] int itemCount() const;
    [[nodiscard]] CartTotals totals(const Terms& terms) const;

    Changes changes;

private:
    [[nodiscard]] std::vector<CartLine>::iterator lineOf(std::string_view productId);

    const Catalogue& catalogue_;
    std::vector<CartLine> lines_;
};

}  // namespace shop
