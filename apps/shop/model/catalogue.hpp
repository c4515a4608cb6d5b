#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "shop/model/product.hpp"

namespace shop {

/// Everything that the shop sells. It never changes.
class Catalogue {
public:
    Catalogue();

    [[nodiscard]] const std::vector<Product>& products() const { return products_; }

    /// Null where there is no such product.
    [[nodiscard]] const Product* find(std::string_view id) const;

    /// The widest categories, in the order of the products.
    [[nodiscard]] std::vector<std::string> categories() const;

private:
    const std::vector<Product> products_;
};

}  // namespace shop
