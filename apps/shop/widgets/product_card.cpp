#include "shop/widgets/product_card.hpp"

#include <utility>

#include "shop/widgets/icon.hpp"
#include "shop/widgets/price.hpp"
#include "shop/widgets/product_picture.hpp"

namespace shop {

namespace {

void showWish(GtkWidget* button, const Product& product, bool wished) {
    setSymbol(gtk_button_get_child(GTK_BUTTON(button)), wished ? Symbol::fullHeart : Symbol::heart);
    setAccessibleName(button, (wished ? "Take off the wishlist: " : "Wish for: ") + product.name);
    setClass(button, "wished", wished);
}

GtkWidget* newName(const Product& product, int lines) {
    auto* name = newText(product.name, {"product-name"});
    gtk_label_set_lines(GTK_LABEL(name), lines);
    gtk_label_set_wrap(GTK_LABEL(name), lines > 1);
    gtk_label_set_ellipsize(GTK_LABEL(name), PANGO_ELLIPSIZE_END);
    gtk_label_set_max_width_chars(GTK_LABEL(name), 15);
    gtk_label_set_yalign(GTK_LABEL(name), 0);
    gtk_widget_set_vexpand(name, TRUE);
    gtk_widget_set_tooltip_text(name, product.name.c_str());
    return name;
}

}  // namespace

GtkWidget* newHeart(const Product& product, Shop& shop, Navigator& navigator) {
    auto* button = newButton(newIcon(Symbol::heart, 18), "", {"round", "heart"}, [] {});
    connect(button, "clicked", [button, &product, &shop, &navigator] {
        const bool wished = shop.toggleWish(product);
        showWish(button, product, wished);
        navigator.say(wished ? product.name + " is on your wishlist." : product.name + " is off your wishlist.");
    });
    showWish(button, product, shop.wishlist.holds(product.id));
    gtk_widget_set_halign(button, GTK_ALIGN_END);
    gtk_widget_set_valign(button, GTK_ALIGN_START);
    return button;
}

GtkWidget* newProductCard(const Product& product, Shop& shop, Navigator& navigator, int nameLines, Action opened) {
    auto* words = newColumn(4, {"card-words"});
    append(words, {newName(product, nameLines), newPrice(product, shop.terms())});
    gtk_widget_set_vexpand(words, TRUE);
    auto* content = newColumn(0);
    append(content, {newProductPicture(product, 136, 132), words});
    auto* button =
        named(newButton(content, product.name, {"card", "product-card"}, std::move(opened)), "card-" + product.id);
    gtk_widget_set_tooltip_text(button, nullptr);
    auto* stack = gtk_overlay_new();
    gtk_overlay_set_child(GTK_OVERLAY(stack), button);
    gtk_overlay_add_overlay(GTK_OVERLAY(stack), newHeart(product, shop, navigator));
    return stack;
}

GtkWidget* newEmptyState(const std::string& title, const std::string& text, GtkWidget* button) {
    auto* heading = newText(title, {"heading"});
    auto* words = newText(text, {"muted"});
    for (auto* label : {heading, words}) {
        gtk_label_set_xalign(GTK_LABEL(label), 0.5);
        gtk_label_set_justify(GTK_LABEL(label), GTK_JUSTIFY_CENTER);
    }
    gtk_label_set_max_width_chars(GTK_LABEL(words), 40);
    gtk_widget_set_halign(button, GTK_ALIGN_CENTER);
    auto* state = newColumn(10, {"empty-state"});
    append(state, {heading, words, button});
    gtk_widget_set_valign(state, GTK_ALIGN_CENTER);
    gtk_widget_set_vexpand(state, TRUE);
    return state;
}

}  // namespace shop
