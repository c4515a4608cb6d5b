#include "shop/shop.hpp"

#include <glib.h>

#include <memory>
#include <utility>

namespace shop {

Shop::Shop(Engagement& library, Preferences preferences, std::filesystem::path preferencesFile)
    : engagement(library), preferences_(std::move(preferences)), preferencesFile_(std::move(preferencesFile)) {}

bool Shop::addToCart(const Product& product, int count) {
    const bool added = cart.add(product.id, count);
    if (added) engagement.addedToCart(product, count, terms_);
    return added;
}

void Shop::setQuantity(const Product& product, int quantity) {
    cart.setQuantity(product.id, quantity);
    engagement.addedToCart(product, quantity, terms_);
}

void Shop::removeFromCart(const Product& product) {
    cart.remove(product.id);
    engagement.removedFromCart(product);
}

void Shop::clearCart() {
    cart.clear();
    engagement.clearedCart();
}

bool Shop::toggleWish(const Product& product) {
    const bool wished = wishlist.toggle(product.id);
    if (wished) {
        engagement.addedToWishlist(product, terms_);
    } else if (wishlist.products().empty()) {
        engagement.clearedWishlist();
    } else {
        engagement.removedFromWishlist(product);
    }
    return wished;
}

std::string Shop::order() {
    const std::unique_ptr<char, decltype(&g_free)> unique(g_uuid_string_random(), &g_free);
    const auto saleId = "S-" + std::string(unique.get()).substr(0, 8);
    engagement.bought(saleId, cart.lines(), terms_);
    engagement.announceOrder(saleId);
    cart.clear();
    return saleId;
}

void Shop::logIn(const Person& person) {
    preferences_.person = person;
    preferences_.write(preferencesFile_);
    engagement.loggedIn(person);
    personChanged.tell();
}

void Shop::logOut() {
    preferences_.person = {};
    preferences_.write(preferencesFile_);
    engagement.loggedOut();
    personChanged.tell();
}

void Shop::setPreference(bool Preferences::*preference, bool value) {
    preferences_.*preference = value;
    preferences_.write(preferencesFile_);
    if (preference == &Preferences::dark) return;
    const bool isConsent = preference == &Preferences::consent || preference == &Preferences::consentOnDevice;
    isConsent ? engagement.setConsents(preferences_) : engagement.setCollection(preferences_);
}

void Shop::readTerms() {
    auto terms = engagement.terms();
    if (terms == terms_) return;
    terms_ = std::move(terms);
    termsChanged.tell();
}

}  // namespace shop
