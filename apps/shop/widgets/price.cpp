#include "shop/widgets/price.hpp"

#include "shop/widgets/ui.hpp"

namespace shop {

GtkWidget* newPrice(const Product& product, const Terms& terms) {
    auto* row = newRow(8);
    auto* price = gtk_label_new(terms.priceOf(product).text().c_str());
    gtk_widget_add_css_class(price, "price");
    gtk_box_append(GTK_BOX(row), price);
    if (!terms.reduces(product)) return row;
    gtk_widget_add_css_class(price, "reduced");
    auto* usual = gtk_label_new(product.price.text().c_str());
    gtk_widget_add_css_class(usual, "usual-price");
    gtk_widget_set_valign(usual, GTK_ALIGN_BASELINE);
    gtk_widget_set_valign(price, GTK_ALIGN_BASELINE);
    gtk_widget_set_tooltip_text(usual, "The usual price");
    gtk_box_append(GTK_BOX(row), usual);
    return row;
}

}  // namespace shop
