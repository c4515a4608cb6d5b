#pragma once

#include <string>

#include "support/library_test.hpp"

namespace orbinel::testing {

/// The commerce operations of a running world.
struct Shop {
    explicit Shop(World& all) : world(all) {}

    OrbinelProduct product(const std::string& id, const Array& taxonomy = {"a", "b"}, double price = 9.5,
                           OptionalText currency = "EUR") {
        return creation.createNewProductWithID({id, "Name " + id, taxonomy, "https://img/" + id, price, currency});
    }

    World& world;
    ProductCreation& creation = world.productCreation;
    OrbinelPageVisit& visits = world.pageVisits;
    OrbinelWishlist& wishlist = world.wishlist;
    OrbinelCartReminder& cart = world.cartReminder;
};

}  // namespace orbinel::testing
