#pragma once

#include <string>

#include "shop/model/product.hpp"

namespace shop {

/// What the vendor's panel can vary without a new version of the shop. The values here hold until it has spoken.
struct Terms {
    static constexpr int salePercent = 20;
    static constexpr Money delivery{490};

    std::string title = "The Pottery";
    bool saleIsOn = false;
    Money freeDeliveryFrom{5000};

    friend bool operator==(const Terms&, const Terms&) = default;

    [[nodiscard]] bool reduces(const Product& product) const { return saleIsOn && product.inSale; }
    [[nodiscard]] Money priceOf(const Product& product) const {
        return reduces(product) ? product.price.reducedBy(salePercent) : product.price;
    }
};

}  // namespace shop
