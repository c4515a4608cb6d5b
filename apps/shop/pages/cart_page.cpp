#include "shop/pages/cart_page.hpp"

#include <algorithm>

#include "shop/widgets/icon.hpp"
#include "shop/widgets/order_summary.hpp"
#include "shop/widgets/product_card.hpp"
#include "shop/widgets/product_picture.hpp"
#include "shop/widgets/ui.hpp"

namespace shop {

namespace {

constexpr int mostWidth = 960;
constexpr int pictureSize = 76;

}  // namespace

CartPage::CartPage(Shop& shop, Navigator& navigator)
    : shop_(shop),
      navigator_(navigator),
      lines_(newColumn(12)),
      summary_(newColumn(10)),
      columns_(newColumn(20)),
      content_(newColumn(0)) {
    auto* checkout = named(newButton("Go to checkout", {"primary"}, [this] { navigator_.open(PageName::checkout); }),
                           "go-to-checkout");
    auto* clear = newButton("Empty the cart", {"quiet"}, [this] { shop_.clearCart(); });
    auto* side = newColumn(14, {"card", "summary"});
    append(side, {newLabel("Summary", {"heading"}), summary_, checkout, clear});
    gtk_widget_set_valign(side, GTK_ALIGN_START);
    gtk_widget_set_size_request(side, 300, -1);
    gtk_widget_set_hexpand(lines_, TRUE);
    append(columns_, {lines_, side});
    empty_ = newEmptyState("Your cart is empty", "What you add to it waits here until you are ready.",
                           newButton("See the collection", {"primary"}, [this] { navigator_.open(PageName::home); }));
    append(content_, {columns_, empty_});
    page_ = newScrolledPage(content_, mostWidth);
    shop_.cart.changes.follow([this] { show(); });
    shop_.termsChanged.follow([this] { show(); });
    show();
}

void CartPage::setWide(bool wide) {
    gtk_orientable_set_orientation(GTK_ORIENTABLE(columns_),
                                   wide ? GTK_ORIENTATION_HORIZONTAL : GTK_ORIENTATION_VERTICAL);
}

/// Rows are kept while the products stay the same, so that the keyboard's focus stays, too.
void CartPage::show() {
    const auto& lines = shop_.cart.lines();
    const bool same = std::equal(lines.begin(), lines.end(), rows_.begin(), rows_.end(),
                                 [](const CartLine& line, const Row& row) { return line.product == row.product; });
    if (!same) build();
    showNumbers();
    gtk_widget_set_visible(columns_, !lines.empty());
    gtk_widget_set_visible(empty_, lines.empty());
}

void CartPage::build() {
    removeChildren(lines_);
    rows_.clear();
    for (const auto& line : shop_.cart.lines()) gtk_box_append(GTK_BOX(lines_), newLine(line));
}

void CartPage::showNumbers() {
    const auto& lines = shop_.cart.lines();
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const auto& [product, quantity] = lines[i];
        setText(rows_[i].quantity, std::to_string(quantity));
        setText(rows_[i].sum, (shop_.terms().priceOf(*product) * quantity).text());
    }
    showSummary(summary_, shop_.cart.totals(shop_.terms()));
}

GtkWidget* CartPage::newLine(const CartLine& line) {
    const auto& product = *line.product;
    Row row{&product, gtk_label_new(""), gtk_label_new("")};
    gtk_widget_add_css_class(row.sum, "price");
    auto* name = newText(product.name, {"product-name"});
    gtk_widget_set_hexpand(name, TRUE);
    auto* remove = newButton(newIcon(Symbol::cross, 14), "Remove from the cart: " + product.name, {"round"},
                             [this, &product] { shop_.removeFromCart(product); });
    gtk_widget_set_valign(remove, GTK_ALIGN_START);
    auto* head = newRow(8);
    append(head, {name, remove});
    auto* foot = newRow(8);
    auto* space = newRow(0);
    gtk_widget_set_hexpand(space, TRUE);
    append(foot, {newStepper(row), space, row.sum});
    auto* words = newColumn(8);
    gtk_widget_set_hexpand(words, TRUE);
    append(words, {head, foot});
    auto* picture = newProductPicture(product, pictureSize, pictureSize);
    gtk_widget_set_valign(picture, GTK_ALIGN_CENTER);
    auto* card = newRow(14, {"card", "cart-line"});
    append(card, {picture, words});
    rows_.push_back(row);
    return card;
}

GtkWidget* CartPage::newStepper(Row& row) {
    const auto& product = *row.product;
    auto* stepper = newRow(4, {"stepper"});
    gtk_label_set_width_chars(GTK_LABEL(row.quantity), 3);
    append(stepper, {newButton(newIcon(Symbol::minus, 14), "One less: " + product.name, {"round"},
                               [this, &product] { changeQuantity(product, -1); }),
                     row.quantity,
                     newButton(newIcon(Symbol::plus, 14), "One more: " + product.name, {"round"},
                               [this, &product] { changeQuantity(product, 1); })});
    return stepper;
}

void CartPage::changeQuantity(const Product& product, int by) {
    const auto& lines = shop_.cart.lines();
    const auto line =
        std::find_if(lines.begin(), lines.end(), [&](const CartLine& one) { return one.product == &product; });
    if (line == lines.end()) return;
    const int quantity = line->quantity + by;
    if (quantity < 1) return shop_.removeFromCart(product);
    if (quantity <= Cart::mostOfOne) shop_.setQuantity(product, quantity);
}

}  // namespace shop
