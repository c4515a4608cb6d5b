#include "shop/navigation_bar.hpp"

#include <string>

#include "shop/widgets/icon.hpp"
#include "shop/widgets/ui.hpp"

namespace shop {

namespace {

struct Destination {
    PageName page;
    Symbol symbol;
    const char* name;
};

constexpr Destination destinations[] = {{PageName::home, Symbol::home, "Shop"},
                                        {PageName::wishlist, Symbol::heart, "Wishlist"},
                                        {PageName::cart, Symbol::bag, "Cart"},
                                        {PageName::messages, Symbol::bell, "Messages"},
                                        {PageName::account, Symbol::person, "Account"}};

GtkWidget* newBadge() {
    auto* badge = gtk_label_new("");
    gtk_widget_add_css_class(badge, "badge");
    gtk_widget_set_halign(badge, GTK_ALIGN_END);
    gtk_widget_set_valign(badge, GTK_ALIGN_START);
    gtk_widget_set_visible(badge, FALSE);
    return badge;
}

GtkWidget* newContent(const Destination& destination, GtkWidget* badge) {
    auto* picture = gtk_overlay_new();
    gtk_overlay_set_child(GTK_OVERLAY(picture), newIcon(destination.symbol, 20));
    gtk_overlay_add_overlay(GTK_OVERLAY(picture), badge);
    gtk_widget_set_halign(picture, GTK_ALIGN_CENTER);
    auto* content = newColumn(3);
    append(content, {picture, gtk_label_new(destination.name)});
    return content;
}

}  // namespace

PageName destinationOf(PageName page) {
    switch (page) {
        case PageName::product:
            return PageName::home;
        case PageName::checkout:
        case PageName::thanks:
            return PageName::cart;
        case PageName::privacy:
            return PageName::account;
        default:
            return page;
    }
}

NavigationBar::NavigationBar(const char* style, const Open& open) : row_(newRow(0, {"navigation", style})) {
    for (const auto& destination : destinations) {
        auto* badge = newBadge();
        auto* button = newButton(newContent(destination, badge), destination.name, {"flat"},
                                 [open, page = destination.page] { open(page); });
        gtk_widget_set_tooltip_text(button, nullptr);
        gtk_box_append(GTK_BOX(row_), button);
        buttons_.push_back({destination.page, button, badge});
    }
}

void NavigationBar::choose(PageName destination) {
    for (const auto& button : buttons_) setClass(button.button, "chosen", button.page == destination);
}

void NavigationBar::showCartCount(int count) {
    for (const auto& [page, button, badge] : buttons_) {
        if (page != PageName::cart) continue;
        setText(badge, count > 99 ? "99+" : std::to_string(count));
        gtk_widget_set_visible(badge, count > 0);
    }
}

}  // namespace shop
