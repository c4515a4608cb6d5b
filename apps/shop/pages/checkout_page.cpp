#include "shop/pages/checkout_page.hpp"

#include <utility>

#include "shop/check_box.hpp"
#include "shop/widgets/order_summary.hpp"
#include "shop/widgets/ui.hpp"

namespace shop {

CheckoutPage::CheckoutPage(Shop& shop, Ordered ordered)
    : shop_(shop),
      ordered_(std::move(ordered)),
      terms_(
          named(newCheckBox("I know that this is a demonstration, and that nothing will arrive."), "checkout-terms")),
      problem_(newText("", {"problem"})),
      summary_(newColumn(10)),
      button_(named(newButton("Place the order", {"primary"}, [this] { order(); }), "place-order")),
      columns_(newColumn(20)) {
    auto* form = newColumn(14, {"card", "form"});
    append(form, {newLabel("Where to?", {"heading"}), name_.widget(), street_.widget(), city_.widget()});
    gtk_widget_set_hexpand(form, TRUE);
    gtk_widget_set_valign(form, GTK_ALIGN_START);
    auto* side = newColumn(14, {"card", "summary"});
    append(side, {newLabel("Your order", {"heading"}), summary_, terms_, problem_, button_});
    gtk_widget_set_valign(side, GTK_ALIGN_START);
    gtk_widget_set_size_request(side, 300, -1);
    gtk_widget_set_visible(problem_, FALSE);
    onToggled(terms_, [this] { gtk_widget_set_visible(problem_, FALSE); });
    append(columns_, {form, side});
    page_ = newScrolledPage(columns_, 900);
}

void CheckoutPage::shown() {
    if (name_.text().empty()) name_.setText(shop_.preferences().person.name);
    showSummary(summary_, shop_.cart.totals(shop_.terms()));
    gtk_widget_set_sensitive(button_, !shop_.cart.lines().empty());
}

void CheckoutPage::setWide(bool wide) {
    gtk_orientable_set_orientation(GTK_ORIENTABLE(columns_),
                                   wide ? GTK_ORIENTATION_HORIZONTAL : GTK_ORIENTATION_VERTICAL);
}

bool CheckoutPage::check() {
    Field* first = nullptr;
    const auto need = [&](Field& field, const char* sentence) {
        const bool missing = field.text().empty();
        field.complain(missing ? sentence : "");
        if (missing && first == nullptr) first = &field;
    };
    need(name_, "Please tell us who it is for.");
    need(street_, "Please tell us the street.");
    need(city_, "Please tell us the city.");
    if (first != nullptr) first->focus();
    const bool agreed = isChecked(terms_);
    setText(problem_, "Please tick the box first.");
    gtk_widget_set_visible(problem_, first == nullptr && !agreed);
    return first == nullptr && agreed;
}

void CheckoutPage::order() {
    if (!check()) return;
    setChecked(terms_, false);
    ordered_(shop_.order());
}

}  // namespace shop
