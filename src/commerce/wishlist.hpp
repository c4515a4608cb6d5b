#pragma once

#include <vector>

#include "commerce/commerce_events.hpp"
#include "orbinel/optional_text.hpp"
#include "orbinel/product.hpp"

namespace orbinel {

/// The wishlist of a shop, as far as events tell of it. Every operation asks the gate.
///
/// Threads: any; no state.
class OrbinelWishlist {
public:
    struct Needs {
        const CommerceEvents& events;
    };

    explicit OrbinelWishlist(const Needs& needs) : events_(needs.events) {}

    /// A product that is not valid is refused, with a record.
    void itemAddedToWishlist(const OrbinelProduct& product) noexcept;
    void itemRemovedFromWishlist(OptionalText productId) noexcept;
    void wishlistCleared() noexcept;

    /// One event a valid product.
    void visitWishlist(const std::vector<OrbinelProduct>& products) noexcept;

private:
    const CommerceEvents& events_;
};

}  // namespace orbinel
