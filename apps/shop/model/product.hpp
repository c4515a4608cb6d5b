#pragma once

#include <string>
#include <vector>

#include "shop/model/money.hpp"

namespace shop {

/// What a product's picture shows.
enum class Motif { mug, bowl, plate, jug, kettle, pot, lamp, candle, vase, planter };

struct Product {
    std::string id;
    std::string name;
    std::vector<std::string> taxonomy;  // from the widest category to the narrowest; at least one
    Money price;
    bool inSale = false;  // reduced while the sale is on
    std::string description;
    Motif motif = Motif::mug;
    std::string colour;  // "#rrggbb", of the thing in the picture
    std::string tint;    // "#rrggbb", behind it
};

}  // namespace shop
