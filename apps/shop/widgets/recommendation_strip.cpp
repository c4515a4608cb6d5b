#include "shop/widgets/recommendation_strip.hpp"

#include <utility>

#include "shop/widgets/product_card.hpp"
#include "shop/widgets/ui.hpp"

namespace shop {

namespace {

constexpr int cardWidth = 180;  // points

}  // namespace

RecommendationStrip::RecommendationStrip(Shop& shop, Navigator& navigator, const std::string& title, Chosen chosen)
    : shop_(shop), navigator_(navigator), chosen_(std::move(chosen)), box_(newColumn(10)), row_(newRow(12)) {
    auto* scroller = gtk_scrolled_window_new();
    gtk_scrolled_window_set_policy(GTK_SCROLLED_WINDOW(scroller), GTK_POLICY_AUTOMATIC, GTK_POLICY_NEVER);
    gtk_scrolled_window_set_child(GTK_SCROLLED_WINDOW(scroller), row_);
    gtk_widget_add_css_class(row_, "strip");
    append(box_, {newLabel(title, {"heading"}), scroller});
    gtk_widget_set_visible(box_, FALSE);
}

void RecommendationStrip::show(const std::vector<std::string>& productIds) {
    removeChildren(row_);
    for (const auto& id : productIds) {
        const auto* product = shop_.catalogue.find(id);
        if (product == nullptr) continue;
        auto* card = newProductCard(*product, shop_, navigator_, 1, [this, product] { chosen_(*product); });
        gtk_widget_set_size_request(card, cardWidth, -1);
        gtk_box_append(GTK_BOX(row_), card);
    }
    gtk_widget_set_visible(box_, gtk_widget_get_first_child(row_) != nullptr);
}

}  // namespace shop
