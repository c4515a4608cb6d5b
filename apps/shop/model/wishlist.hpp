#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "shop/model/catalogue.hpp"
#include "shop/model/changes.hpp"

namespace shop {

/// What the person would like to have one day, in the order in which it was wished.
class Wishlist {
public:
    explicit Wishlist(const Catalogue& catalogue) : catalogue_(catalogue) {}

    [[nodiscard]] bool holds(std::string_view productId) const { return find(productId) != products_.end(); }

    /// Adds the product, or takes it off; whether it is on the list now. What the shop does not sell is never on it.
    bool toggle(std::string_view productId) {
        const auto place = find(productId);
        const auto* product = catalogue_.find(productId);
        const bool adds = place == products_.end() && product != nullptr;
        if (place != products_.end()) products_.erase(place);
        if (adds) products_.push_back(product);
        changes.tell();
        return adds;
    }

    void clear() {
        products_.clear();
        changes.tell();
    }

    [[nodiscard]] const std::vector<const Product*>& products() const { return products_; }

    Changes changes;

private:
    [[nodiscard]] std::vector<const Product*>::const_iterator find(std::string_view productId) const {
        return std::find_if(products_.begin(), products_.end(),
                            [productId](const Product* product) { return product->id == productId; });
    }

    const Catalogue& catalogue_;
    std::vector<const Product*> products_;
};

}  // namespace shop
