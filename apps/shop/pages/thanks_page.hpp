#pragma once

#include <string>
#include <utility>
#include <vector>

#include "shop/pages/page.hpp"
#include "shop/shop.hpp"

namespace shop {

/// Thanks for an order, and a survey of our own: what to make next.
class ThanksPage final : public Page {
public:
    ThanksPage(Shop& shop, Navigator& navigator);

    [[nodiscard]] GtkWidget* widget() const override { return page_; }
    [[nodiscard]] std::string title() const override { return "Thank you"; }

    void setOrder(const std::string& saleId);

private:
    [[nodiscard]] GtkWidget* newSurvey();
    void send();

    Shop& shop_;
    Navigator& navigator_;
    GtkWidget* const order_;
    GtkWidget* const questions_;
    GtkWidget* const thanks_;
    std::vector<std::pair<std::string, GtkWidget*>> choices_;
    GtkWidget* reply_ = nullptr;
    GtkWidget* page_ = nullptr;
};

}  // namespace shop
