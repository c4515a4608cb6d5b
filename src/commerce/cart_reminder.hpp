#pragma once

#include <string_view>

#include "base/late.hpp"
#include "commerce/commerce_events.hpp"
#include "commerce/recommendation_attribution.hpp"
#include "orbinel/optional_text.hpp"
#include "orbinel/product.hpp"
#include "session/session.hpp"

namespace orbinel {

/// The cart and its purchases: events, and in the session's record what the backend reminds a person of. Every
/// operation asks the gate.
///
/// The record keeps what was added and neither removed nor bought (`abandoned_items`, one a product), and what was
/// removed without having been added in this session (`removed_items`). The two change in one step.
///
/// Threads: any; no state of its own.
class OrbinelCartReminder {
public:
    struct Needs {
        const CommerceEvents& events;
        OrbinelSession& session;
    };

    explicit OrbinelCartReminder(const Needs& needs) : events_(needs.events), session_(needs.session) {}

    Late<RecommendationAttribution> recommendations;

    /// A product that is not valid is refused, with a record.
    void itemAddedToCart(const OrbinelProduct& product) noexcept;
    void itemRemovedFromCart(OptionalText productId) noexcept;
    void cartCleared() noexcept;

    /// Sets the sale's ID on the product (an empty one is not set), and empties the cart. A product that is not valid
    /// is refused, with a record.
    void itemPurchased(OptionalText saleId, const OrbinelProduct& product) noexcept;

private:
    void putAbandonedItem(const OrbinelProduct& product);
    void removeAbandonedItem(std::string_view productId);
    void emptyCart();

    const CommerceEvents& events_;
    OrbinelSession& session_;
};

}  // namespace orbinel
