#include "inapp/template_products.hpp"

#include <string>
#include <string_view>

#include "base/guard.hpp"
#include "base/number_reading.hpp"
#include "inapp/template_values.hpp"

namespace orbinel {

namespace values = template_values;

namespace {

constexpr std::string_view uniqueSaleId = "unique_sale_id";

/// Calls `take` with every item that is a dictionary, of the list or of the dictionary's list, until it says no.
template <typename Take>
void forEachItem(const Value& value, std::string_view listKey, Take&& take) {
    const auto* fields = value.ifDictionary();
    const auto* items = fields != nullptr ? (*fields)[listKey].ifArray() : value.ifArray();
    if (items == nullptr) return;
    for (const auto& item : *items) {
        const auto* one = item.ifDictionary();
        if (one != nullptr && !take(*one)) return;
    }
}

/// A single category may come as a text.
Array taxonomyOf(const Value& value) {
    if (const auto* categories = value.ifArray()) return *categories;
    const auto& category = value.stringOrEmpty();
    return category.empty() ? Array() : Array{category};
}

const Value& saleIdOf(const Dictionary& item, const Value& all) {
    const auto* own = item.find(uniqueSaleId);
    const auto* common = all.ifDictionary();
    return own == nullptr && common != nullptr ? (*common)[uniqueSaleId] : item[uniqueSaleId];
}

}  // namespace

TemplateProducts::TemplateProducts(const Needs& needs)
    : reports_(needs.reports),
      creation_(needs.creation),
      cart_(needs.cart),
      presented_(needs.presented),
      json_(needs.json) {}

void TemplateProducts::purchase(const Value& value) noexcept {
    guarded(reports_, "+[OrbinelTemplateStore purchaseItems:]", [&] {
        forEachItem(value, "purchased_items", [&](const Dictionary& item) {
            const auto& saleId = saleIdOf(item, value);  // each item keeps its own, also one that they share
            if (!mayKeep(Array{item, saleId})) return false;
            const auto product = productOf(item, item["price"], item["currency"]);
            cart_.itemPurchased(values::textOf(saleId, json_), product);
            return true;
        });
    });
}

void TemplateProducts::addToCart(const Value& value) noexcept {
    guarded(reports_, "+[OrbinelTemplateStore addItemsToCart:]", [&] {
        forEachItem(value, "cart_items", [&](const Dictionary& item) {
            if (!mayKeep(item)) return false;
            cart_.itemAddedToCart(productOf(item, item["product_price"], item["product_currency"]));
            return true;
        });
    });
}

bool TemplateProducts::mayKeep(const Value& sent) const {
    const bool may = presented_.mayKeep(sent);
    if (!may) reports_.note("Dropped products of the page: the message has sent too much.");
    return may;
}

OrbinelProduct TemplateProducts::productOf(const Dictionary& item, const Value& price, const Value& currency) const {
    const auto text = [&](std::string_view field) { return values::textOf(item[field], json_); };
    const auto id = text("product_id");
    const auto name = text("product_name");
    const auto imageUrl = text("product_image_url");
    const auto taxonomy = taxonomyOf(item["product_taxonomy"]);
    return creation_.createNewProductWithID(
        {id, name, taxonomy, imageUrl, doubleValue(price).value_or(0), currency.stringOrEmpty()});
}

}  // namespace orbinel
