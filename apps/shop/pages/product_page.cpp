#include "shop/pages/product_page.hpp"

#include "shop/widgets/icon.hpp"
#include "shop/widgets/price.hpp"
#include "shop/widgets/product_card.hpp"
#include "shop/widgets/product_picture.hpp"
#include "shop/widgets/ui.hpp"

namespace shop {

namespace {

constexpr int mostWidth = 960;

std::string pathOf(const Product& product) {
    std::string path;
    for (const auto& category : product.taxonomy) path += (path.empty() ? "" : " · ") + category;
    return path;
}

GtkWidget* newDeliveryNote(const Terms& terms) {
    auto* row = newRow(10, {"note"});
    auto* text = newText("Free delivery from " + terms.freeDeliveryFrom.text());
    gtk_widget_set_hexpand(text, TRUE);
    append(row, {newIcon(Symbol::truck, 20), text});
    return row;
}

}  // namespace

ProductPage::ProductPage(Shop& shop, Navigator& navigator)
    : shop_(shop),
      navigator_(navigator),
      strip_(shop, navigator, "More of this kind",
             [this](const Product& product) {
                 shop_.engagement.choseRecommended(product, true, shop_.terms());
                 navigator_.openProduct(product);
             }),
      stage_(newColumn(20)) {
    auto* content = newColumn(28);
    append(content, {stage_, strip_.widget()});
    page_ = newScrolledPage(content, mostWidth);
    shop_.termsChanged.follow([this] { build(); });
}

void ProductPage::setProduct(const Product& product) {
    product_ = &product;
    strip_.clear();
    build();
}

void ProductPage::shown() {
    gtk_adjustment_set_value(gtk_scrolled_window_get_vadjustment(GTK_SCROLLED_WINDOW(page_)), 0);
    if (product_ == nullptr) return;
    shop_.engagement.sawProduct(*product_, shop_.terms());
    shop_.engagement.recommendBeside(*product_, [this, asked = product_](const auto& ids) {
        if (asked == product_) strip_.show(ids);
    });
}

void ProductPage::setWide(bool wide) {
    wide_ = wide;
    build();
}

void ProductPage::build() {
    if (product_ == nullptr) return;
    removeChildren(stage_);
    gtk_orientable_set_orientation(GTK_ORIENTABLE(stage_),
                                   wide_ ? GTK_ORIENTATION_HORIZONTAL : GTK_ORIENTATION_VERTICAL);
    gtk_box_set_spacing(GTK_BOX(stage_), wide_ ? 36 : 20);
    gtk_box_set_homogeneous(GTK_BOX(stage_), wide_);
    auto* picture = newProductPicture(*product_, 240, wide_ ? 400 : 260);
    gtk_widget_add_css_class(picture, "large");
    gtk_widget_set_hexpand(picture, TRUE);
    append(stage_, {picture, newWords()});
}

GtkWidget* ProductPage::newWords() {
    const auto& product = *product_;
    auto* name = newText(product.name, {"title"});
    gtk_widget_set_hexpand(name, TRUE);
    auto* head = newRow(12);
    append(head, {name, newHeart(product, shop_, navigator_)});
    auto* price = newPrice(product, shop_.terms());
    gtk_widget_add_css_class(price, "large-price");
    auto* add = named(newButton("Add to cart", {"primary"},
                                [this, &product] {
                                    const bool added = shop_.addToCart(product, 1);
                                    navigator_.say(added ? product.name + " is in your cart."
                                                         : "More than 99 of one piece do not fit into a parcel.");
                                }),
                      "add-to-cart");
    auto* words = newColumn(14);
    append(words, {newLabel(pathOf(product), {"muted"}), head, price, newText(product.description), add,
                   newDeliveryNote(shop_.terms())});
    gtk_widget_set_valign(words, wide_ ? GTK_ALIGN_CENTER : GTK_ALIGN_START);
    return words;
}

}  // namespace shop
