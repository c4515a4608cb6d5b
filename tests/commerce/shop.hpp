#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "base/mutex.hpp"
#include "commerce/cart_reminder.hpp"
#include "commerce/page_visits.hpp"
#include "commerce/product_creation.hpp"
#include "commerce/wishlist.hpp"
#include "core/world.hpp"

namespace orbinel::testing {

/// Keeps what the cart tells the recommendations: "cart sku" and "purchase sku".
class KeptAttribution final : public RecommendationAttribution {
public:
    void logAddToCartWithProduct(const OrbinelProduct& product) override { keep("cart ", product); }
    void logPurchaseWithProduct(const OrbinelProduct& product) override { keep("purchase ", product); }
    std::vector<std::string> told() const {
        const MutexLock lock(mutex_);
        return told_;
    }

private:
    void keep(const char* what, const OrbinelProduct& product) {
        const MutexLock lock(mutex_);
        told_.push_back(what + product.getProductID());
    }
    mutable Mutex mutex_;
    std::vector<std::string> told_ ORBINEL_GUARDED_BY(mutex_);
};

/// The commerce operations of a running world.
struct Shop {
    explicit Shop(World& world)
        : creation(world.productCreation),
          visits(world.pageVisits),
          wishlist(world.wishlist),
          cart(world.cartReminder) {}

    OrbinelProduct product(const std::string& id, const Array& taxonomy = {"a", "b"}, double price = 9.5,
                           OptionalText currency = "EUR") {
        return creation.createNewProductWithID({id, "Name " + id, taxonomy, "https://img/" + id, price, currency});
    }

    ProductCreation& creation;
    OrbinelPageVisit& visits;
    OrbinelWishlist& wishlist;
    OrbinelCartReminder& cart;
};

}  // namespace orbinel::testing
