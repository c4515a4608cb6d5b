#include "shop/pages/wishlist_page.hpp"

#include "shop/widgets/icon.hpp"
#include "shop/widgets/price.hpp"
#include "shop/widgets/product_card.hpp"
#include "shop/widgets/product_picture.hpp"
#include "shop/widgets/ui.hpp"

namespace shop {

WishlistPage::WishlistPage(Shop& shop, Navigator& navigator)
    : shop_(shop), navigator_(navigator), list_(newColumn(12)) {
    empty_ = newEmptyState("Nothing wished for yet", "Press the heart of a piece that you like, and it waits here.",
                           newButton("See the collection", {"primary"}, [this] { navigator_.open(PageName::home); }));
    auto* content = newColumn(0);
    append(content, {list_, empty_});
    page_ = newScrolledPage(content, 640);
    shop_.wishlist.changes.follow([this] { show(); });
    shop_.termsChanged.follow([this] { show(); });
    show();
}

void WishlistPage::show() {
    removeChildren(list_);
    const auto& products = shop_.wishlist.products();
    for (const auto* product : products) gtk_box_append(GTK_BOX(list_), newWish(*product));
    gtk_widget_set_visible(list_, !products.empty());
    gtk_widget_set_visible(empty_, products.empty());
}

GtkWidget* WishlistPage::newWish(const Product& product) {
    auto* words = newColumn(6);
    append(words, {newText(product.name, {"product-name"}), newPrice(product, shop_.terms())});
    gtk_widget_set_hexpand(words, TRUE);
    gtk_widget_set_valign(words, GTK_ALIGN_CENTER);
    auto* open = newRow(14);
    append(open, {newProductPicture(product, 76, 76), words});
    auto* button = newButton(open, product.name, {"flat"}, [this, &product] { navigator_.openProduct(product); });
    gtk_widget_set_tooltip_text(button, nullptr);
    gtk_widget_set_hexpand(button, TRUE);
    auto* add = newButton(newIcon(Symbol::bag, 18), "Add to cart: " + product.name, {"round"}, [this, &product] {
        if (shop_.addToCart(product, 1)) navigator_.say(product.name + " is in your cart.");
    });
    auto* remove = newButton(newIcon(Symbol::cross, 14), "Take off the wishlist: " + product.name, {"round"},
                             [this, &product] { shop_.toggleWish(product); });
    for (auto* one : {add, remove}) gtk_widget_set_valign(one, GTK_ALIGN_CENTER);
    auto* card = newRow(8, {"card", "cart-line"});
    append(card, {button, add, remove});
    return card;
}

}  // namespace shop
