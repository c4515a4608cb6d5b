#include "commerce/wishlist.hpp"

#include <string>

#include "commerce/product_codes.hpp"

namespace orbinel {

namespace {

constexpr std::string_view ITEM_ADDED_TO_WISHLIST = "item_added_to_wishlist";
constexpr std::string_view ITEM_REMOVED_FROM_WISHLIST = "item_removed_from_wishlist";
constexpr std::string_view WISHLIST_CLEAR = "wishlist_clear";
constexpr std::string_view WISHLIST_PAGE_VIEW = "wishlist_page_view";

}  // namespace

void OrbinelWishlist::itemAddedToWishlist(const OrbinelProduct& product) noexcept {
    events_.throughGate("+[OrbinelWishlist itemAddedToWishlist:]", [&] {
        if (!product.isProductValid()) {
            return events_.reportInvalid(product, LogType::wishlist, "itemAddedToWishlist");
        }
        const auto summary = product.getProductSummary();
        events_.tag(ITEM_ADDED_TO_WISHLIST, summary);
        events_.feed("itemAddedToWishlist", [&] { return summary; });
    });
}

void OrbinelWishlist::itemRemovedFromWishlist(OptionalText productId) noexcept {
    events_.throughGate("+[OrbinelWishlist itemRemovedFromWishlist:]", [&] {
        if (productId.view().empty()) return;
        events_.tag(ITEM_REMOVED_FROM_WISHLIST, {{std::string(product_code::PRODUCT_ID), productId.view()}});
        events_.feed("itemRemovedFromWishlist", [&] { return Dictionary{{"value", productId.view()}}; });
    });
}

void OrbinelWishlist::wishlistCleared() noexcept {
    events_.throughGate("+[OrbinelWishlist wishlistCleared]", [&] {
        events_.tag(WISHLIST_CLEAR);
        events_.feed("wishlistCleared");
    });
}

void OrbinelWishlist::visitWishlist(const std::vector<OrbinelProduct>& products) noexcept {
    events_.throughGate("+[OrbinelWishlist visitWishlist:]",
                        [&] { events_.tagEachValid(products, WISHLIST_PAGE_VIEW, "visitWishlist"); });
}

}  // namespace orbinel
