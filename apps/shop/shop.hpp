#pragma once

#include <filesystem>
#include <string>

#include "shop/engagement.hpp"
#include "shop/model/cart.hpp"
#include "shop/model/catalogue.hpp"
#include "shop/model/changes.hpp"
#include "shop/model/preferences.hpp"
#include "shop/model/terms.hpp"
#include "shop/model/wishlist.hpp"

namespace shop {

/// What a person does in the shop: each operation changes the model and tells the library. Pages call only this.
class Shop {
public:
    Shop(Engagement& library, Preferences preferences, std::filesystem::path preferencesFile);

    const Catalogue catalogue;
    Cart cart{catalogue};
    Wishlist wishlist{catalogue};
    Engagement& engagement;

    Changes termsChanged;
    Changes personChanged;

    /// False where there would be too many of it.
    bool addToCart(const Product& product, int count);
    void setQuantity(const Product& product, int quantity);
    void removeFromCart(const Product& product);
    void clearCart();

    /// Whether it is on the list now.
    bool toggleWish(const Product& product);

    /// Buys what is in the cart, which is empty then. The sale's ID.
    std::string order();

    void logIn(const Person& person);
    void logOut();

    [[nodiscard]] const Preferences& preferences() const { return preferences_; }
    void setPreference(bool Preferences::*preference, bool value);

    [[nodiscard]] const Terms& terms() const { return terms_; }
    void readTerms();

private:
    Preferences preferences_;
    const std::filesystem::path preferencesFile_;
    Terms terms_;
};

}  // namespace shop
