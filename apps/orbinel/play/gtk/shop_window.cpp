#include "apps/orbinel/play/gtk/shop_window.hpp"

#include <array>
#include <string>

namespace orbinel::tool {

namespace {

constexpr int phoneWidth = 390;  // points
constexpr int phoneHeight = 844;

constexpr const char* style =
    ".shop { background: #f4efe9; color: #23201d; }"
    " .shop-header { background: #2f6f73; color: white; padding: 52px 20px 18px; }"
    " .shop-title { font-size: 24px; font-weight: 700; }"
    " .shop-card { background: white; border-radius: 14px; padding: 14px; }"
    " .shop-picture { border-radius: 10px; min-width: 72px; min-height: 72px; }"
    " .shop-name { font-size: 16px; font-weight: 600; }"
    " .shop-price { color: #655d55; }";

struct Product {
    const char* name;
    const char* price;
    const char* colour;
};

constexpr std::array<Product, 6> products{{{"Blue mug", "9.50 €", "#2f6f73"},
                                           {"Breakfast bowl", "14.00 €", "#d9692f"},
                                           {"Kettle", "29.50 €", "#8f857b"},
                                           {"Tea cups, set of four", "24.00 €", "#f0c48a"},
                                           {"Milk jug", "12.00 €", "#a43d17"},
                                           {"Sugar pot", "8.00 €", "#23201d"}}};

void addStyle(const char* css) {
    const hosts::ObjectPointer<GtkCssProvider> provider(gtk_css_provider_new());
    gtk_css_provider_load_from_data(provider.get(), css, -1);
    gtk_style_context_add_provider_for_display(gdk_display_get_default(), GTK_STYLE_PROVIDER(provider.get()),
                                               GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
}

GtkWidget* newLabel(const char* text, const char* styleClass) {
    auto* label = gtk_label_new(text);
    gtk_label_set_xalign(GTK_LABEL(label), 0);
    gtk_widget_add_css_class(label, styleClass);
    return label;
}

GtkWidget* newColumn(int spacing) { return gtk_box_new(GTK_ORIENTATION_VERTICAL, spacing); }

GtkWidget* newPicture(const char* colour) {
    auto* picture = gtk_drawing_area_new();
    gtk_widget_add_css_class(picture, "shop-picture");
    gtk_widget_add_css_class(picture, ("shop-" + std::string(colour + 1)).c_str());
    addStyle((".shop-" + std::string(colour + 1) + " { background: " + colour + "; }").c_str());
    return picture;
}

GtkWidget* newCard(const Product& product) {
    auto* words = newColumn(4);
    gtk_widget_set_valign(words, GTK_ALIGN_CENTER);
    gtk_box_append(GTK_BOX(words), newLabel(product.name, "shop-name"));
    gtk_box_append(GTK_BOX(words), newLabel(product.price, "shop-price"));
    auto* card = gtk_box_new(GTK_ORIENTATION_HORIZONTAL, 14);
    gtk_widget_add_css_class(card, "shop-card");
    gtk_box_append(GTK_BOX(card), newPicture(product.colour));
    gtk_box_append(GTK_BOX(card), words);
    return card;
}

GtkWidget* newPage() {
    auto* header = newColumn(2);
    gtk_widget_add_css_class(header, "shop-header");
    gtk_box_append(GTK_BOX(header), newLabel("The Pottery", "shop-title"));
    gtk_box_append(GTK_BOX(header), newLabel("Made by hand, new every week", "shop-subtitle"));
    auto* shelf = newColumn(12);
    for (const auto side : {&gtk_widget_set_margin_start, &gtk_widget_set_margin_end, &gtk_widget_set_margin_top}) {
        side(shelf, 16);
    }
    for (const auto& product : products) gtk_box_append(GTK_BOX(shelf), newCard(product));
    auto* page = newColumn(0);
    gtk_box_append(GTK_BOX(page), header);
    gtk_box_append(GTK_BOX(page), shelf);
    return page;
}

/// On a screen that is lower than a phone, the shop is cut off instead of making the window higher.
GtkWidget* newScroller(GtkWidget* page) {
    auto* scroller = gtk_scrolled_window_new();
    gtk_scrolled_window_set_policy(GTK_SCROLLED_WINDOW(scroller), GTK_POLICY_NEVER, GTK_POLICY_EXTERNAL);
    gtk_scrolled_window_set_child(GTK_SCROLLED_WINDOW(scroller), page);
    gtk_widget_add_css_class(scroller, "shop");
    return scroller;
}

/// What ends the window is the scenario.
gboolean dropWish(GtkWindow* /*window*/, gpointer /*data*/) noexcept { return TRUE; }

}  // namespace

ShopWindow::ShopWindow() : window_(hosts::retain(GTK_WINDOW(gtk_window_new()))) {
    addStyle(style);
    gtk_window_set_title(get(), "orbinel play");
    gtk_window_set_decorated(get(), FALSE);
    gtk_window_set_default_size(get(), phoneWidth, phoneHeight);
    gtk_window_set_child(get(), newScroller(newPage()));
    g_signal_connect(get(), "close-request", G_CALLBACK(&dropWish), nullptr);
}

ShopWindow::~ShopWindow() { gtk_window_destroy(get()); }

}  // namespace orbinel::tool
