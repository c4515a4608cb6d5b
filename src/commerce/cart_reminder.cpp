#include "commerce/cart_reminder.hpp"

#include <algorithm>
#include <string>
#include <utility>

#include "commerce/product_codes.hpp"
#include "commerce/product_internal.hpp"
#include "events/data_types.hpp"
#include "events/event_budget.hpp"

namespace orbinel {

namespace {

constexpr std::string_view ADDED_TO_CART = "item_added_to_cart";
constexpr std::string_view REMOVED_FROM_CART = "item_removed_from_cart";
constexpr std::string_view CART_CLEARED = "cart_cleared";

constexpr std::string_view abandonedId = "product_id";

/// The texts of a taxonomy as the backend reads them in a purchase: "[Women, Shoes]".
std::string categoryText(const Array& taxonomy) {
    std::string text = "[";
    for (bool first = true; const auto& category : makeArrayValid(taxonomy)) {
        if (!std::exchange(first, false)) text += ", ";
        text += category.stringOrEmpty();
    }
    return text + "]";
}

Dictionary getProductParameters(const OrbinelProduct& product, OptionalText saleId) {
    Dictionary purchase{{"name", product.getName()},
                        {"category", categoryText(product.getTaxonomy())},
                        {"price", product.getUnitPrice()},
                        {"currency", product.getCurrency()},
                        {"product_id", product.getProductID()},
                        {"quantity", product.getQuantity()}};
    if (saleId.isPresent()) purchase.set("sale_id", saleId.view());
    return purchase;
}

Dictionary abandonedItemOf(const OrbinelProduct& product) {
    return {{std::string(abandonedId), product.getProductID()},
            {"image_url", product.getImageURL()},
            {"title", product.getName()},
            {"currency", product.getCurrency()},
            {"price", product.getUnitPrice()}};
}

/// Tells whether an item is of that product.
auto isItemOf(std::string_view productId) {
    return [productId](const Value& item) {
        const auto* fields = item.ifDictionary();
        return fields != nullptr && (*fields)[abandonedId].stringOrEmpty() == productId;
    };
}

bool isItemAlreadyAdded(const Array& items, std::string_view productId) {
    return std::any_of(items.begin(), items.end(), isItemOf(productId));
}

}  // namespace

void OrbinelCartReminder::itemAddedToCart(const OrbinelProduct& product) noexcept {
    events_.throughGate("+[OrbinelCartReminder itemAddedToCart:]", [&] {
        if (!product.isProductValid()) {
            return events_.reportInvalid(product, LogType::cartReminder, "itemAddedToCart");
        }
        putAbandonedItem(product);
        const auto summary = product.getProductSummary();
        events_.tag(ADDED_TO_CART, summary);
        recommendations->logAddToCartWithProduct(product);
        events_.feed("itemAddedToCart", [&] { return summary; });
    });
}

void OrbinelCartReminder::putAbandonedItem(const OrbinelProduct& product) {
    auto item = abandonedItemOf(product);
    const auto productId = item[abandonedId].stringOrEmpty();
    session_.update([&](SessionRecord& record) {
        if (isItemAlreadyAdded(record.abandoned_items, productId)) return;
        record.abandoned_items.emplace_back(std::move(item));
        std::erase_if(record.removed_items, [&](const Value& removed) { return removed.stringOrEmpty() == productId; });
    });
}

void OrbinelCartReminder::itemRemovedFromCart(OptionalText productId) noexcept {
    events_.throughGate("+[OrbinelCartReminder itemRemovedFromCart:]", [&] {
        if (productId.view().empty()) return;
        removeAbandonedItem(productId.view());
        events_.tag(REMOVED_FROM_CART, {{std::string(product_code::PRODUCT_ID), productId.view()}});
        events_.feed("itemRemovedFromCart", [&] { return Dictionary{{"value", productId.view()}}; });
    });
}

void OrbinelCartReminder::removeAbandonedItem(std::string_view productId) {
    session_.update([&](SessionRecord& record) {
        const auto removed = std::erase_if(record.abandoned_items, isItemOf(productId));
        if (removed == 0) record.removed_items.emplace_back(productId);
    });
}

void OrbinelCartReminder::cartCleared() noexcept {
    events_.throughGate("+[OrbinelCartReminder cartCleared]", [&] {
        emptyCart();
        events_.tag(CART_CLEARED);
        events_.feed("cartCleared");
    });
}

void OrbinelCartReminder::itemPurchased(OptionalText saleId, const OrbinelProduct& product) noexcept {
    events_.throughGate("+[OrbinelCartReminder itemPurchased:product:]", [&] {
        if (!product.isProductValid()) {
            return events_.reportInvalid(product, LogType::cartReminder, "itemPurchased");
        }
        if (!saleId.view().empty()) product.internal()->set(product_code::SALE_ID, saleId.view());
        session_.update([purchase = getProductParameters(product, saleId)](SessionRecord& record) mutable {
            record.purchased_items.emplace_back(std::move(purchase));
        });
        const auto summary = product.getProductSummary();
        events_.tag(CONFIRMATION_PAGE_VIEW, summary);
        emptyCart();
        recommendations->logPurchaseWithProduct(product);
        events_.feed("itemPurchased", [&] { return summary; });
    });
}

void OrbinelCartReminder::emptyCart() {
    session_.update([](SessionRecord& record) {
        record.abandoned_items.clear();
        record.removed_items.clear();
    });
}

}  // namespace orbinel
