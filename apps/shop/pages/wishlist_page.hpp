#pragma once

#include "shop/pages/page.hpp"
#include "shop/shop.hpp"

namespace shop {

/// What the person would like to have one day.
class WishlistPage final : public Page {
public:
    WishlistPage(Shop& shop, Navigator& navigator);

    [[nodiscard]] GtkWidget* widget() const override { return page_; }
    [[nodiscard]] std::string title() const override { return "Your wishlist"; }
    void shown() override { shop_.engagement.sawWishlist(shop_.wishlist.products(), shop_.terms()); }

private:
    void show();
    [[nodiscard]] GtkWidget* newWish(const Product& product);

    Shop& shop_;
    Navigator& navigator_;
    GtkWidget* const list_;
    GtkWidget* empty_ = nullptr;
    GtkWidget* page_ = nullptr;
};

}  // namespace shop
