#include "shop/widgets/order_summary.hpp"

#include <string>

#include "shop/widgets/ui.hpp"

namespace shop {

namespace {

GtkWidget* newAmount(const std::string& name, const std::string& amount, const char* style) {
    auto* row = newRow(12, {style});
    auto* label = newLabel(name);
    gtk_widget_set_hexpand(label, TRUE);
    append(row, {label, gtk_label_new(amount.c_str())});
    return row;
}

}  // namespace

void showSummary(GtkWidget* box, const CartTotals& totals) {
    removeChildren(box);
    append(box, {newAmount("Goods", totals.goods.text(), "amount"),
                 newAmount("Delivery", totals.delivery == Money{} ? "free" : totals.delivery.text(), "amount"),
                 newAmount("Total", totals.total.text(), "total")});
    if (totals.saved > Money{}) append(box, {newText("You save " + totals.saved.text() + ".", {"saving"})});
    if (totals.untilFreeDelivery > Money{}) {
        append(box, {newText("Another " + totals.untilFreeDelivery.text() + ", and delivery is free.", {"muted"})});
    }
}

}  // namespace shop
