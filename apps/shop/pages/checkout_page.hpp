#pragma once

#include <functional>
#include <string>

#include "shop/pages/page.hpp"
#include "shop/shop.hpp"
#include "shop/widgets/field.hpp"

namespace shop {

/// Where to, and then it is bought. Nothing is charged.
class CheckoutPage final : public Page {
public:
    using Ordered = std::function<void(const std::string& saleId)>;

    CheckoutPage(Shop& shop, Ordered ordered);

    [[nodiscard]] GtkWidget* widget() const override { return page_; }
    [[nodiscard]] std::string title() const override { return "Checkout"; }
    void shown() override;
    void setWide(bool wide) override;

private:
    void order();
    [[nodiscard]] bool check();

    Shop& shop_;
    const Ordered ordered_;
    Field name_{"Name", "checkout-name", GTK_INPUT_PURPOSE_NAME};
    Field street_{"Street and number", "checkout-street"};
    Field city_{"Postcode and city", "checkout-city"};
    GtkWidget* const terms_;
    GtkWidget* const problem_;
    GtkWidget* const summary_;
    GtkWidget* const button_;
    GtkWidget* const columns_;
    GtkWidget* page_ = nullptr;
};

}  // namespace shop
