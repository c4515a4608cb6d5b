#pragma once

#include "base/reports.hpp"
#include "commerce/cart_reminder.hpp"
#include "commerce/product_creation.hpp"
#include "inapp/presented_inapp.hpp"
#include "orbinel/platform/json.hpp"

namespace orbinel {

/// The products that a person buys or puts into the cart in a page. An item that lacks a field is refused as a product
/// without it is, with a record. What is beyond that which a message may send is dropped.
///
/// Threads: any; no state.
class TemplateProducts {
public:
    struct Needs {
        Reports& reports;
        ProductCreation& creation;
        OrbinelCartReminder& cart;
        PresentedInapp& presented;
        const platform::Json& json;
    };

    explicit TemplateProducts(const Needs& needs);

    /// What was bought: the items under "purchased_items", or a list of them. "unique_sale_id" is an item's own, or
    /// stands beside the items.
    void purchase(const Value& value) noexcept;

    /// What was put into the cart: the items under "cart_items", or a list of them.
    void addToCart(const Value& value) noexcept;

private:
    [[nodiscard]] bool mayKeep(const Value& sent) const;
    [[nodiscard]] OrbinelProduct productOf(const Dictionary& item, const Value& price, const Value& currency) const;

    Reports& reports_;
    ProductCreation& creation_;
    OrbinelCartReminder& cart_;
    PresentedInapp& presented_;
    const platform::Json& json_;
};

}  // namespace orbinel
