#pragma once

#include <string>
#include <vector>

#include "shop/pages/page.hpp"
#include "shop/shop.hpp"

namespace shop {

/// What is in the cart, what it comes to, and the way to the checkout.
class CartPage final : public Page {
public:
    CartPage(Shop& shop, Navigator& navigator);

    [[nodiscard]] GtkWidget* widget() const override { return page_; }
    [[nodiscard]] std::string title() const override { return "Your cart"; }
    void shown() override { shop_.engagement.sawCart(shop_.cart.lines(), shop_.terms()); }
    void setWide(bool wide) override;

private:
    struct Row {
        const Product* product;
        GtkWidget* quantity;
        GtkWidget* sum;
    };

    void show();
    void build();
    void showNumbers();
    [[nodiscard]] GtkWidget* newLine(const CartLine& line);
    [[nodiscard]] GtkWidget* newStepper(Row& row);
    void changeQuantity(const Product& product, int by);

    Shop& shop_;
    Navigator& navigator_;
    std::vector<Row> rows_;  // as on the page
    GtkWidget* const lines_;
    GtkWidget* const summary_;
    GtkWidget* const columns_;
    GtkWidget* const content_;
    GtkWidget* empty_ = nullptr;
    GtkWidget* page_ = nullptr;
};

}  // namespace shop
