#pragma once

#include "orbinel/product.hpp"

namespace orbinel {

/// What the cart needs of the recommendations, so that what was clicked there is followed to its sale; bound by core.
/// Called without a lock held.
class RecommendationAttribution {
public:
    virtual ~RecommendationAttribution() = default;
    virtual void logAddToCartWithProduct(const OrbinelProduct& product) = 0;
    virtual void logPurchaseWithProduct(const OrbinelProduct& product) = 0;
};

}  // namespace orbinel
