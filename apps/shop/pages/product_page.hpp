#pragma once

#include "shop/pages/page.hpp"
#include "shop/shop.hpp"
#include "shop/widgets/recommendation_strip.hpp"

namespace shop {

/// One product: large, with its way into the cart, and more of its kind.
class ProductPage final : public Page {
public:
    ProductPage(Shop& shop, Navigator& navigator);

    [[nodiscard]] GtkWidget* widget() const override { return page_; }
    [[nodiscard]] std::string title() const override { return product_ != nullptr ? product_->taxonomy.back() : ""; }
    void shown() override;
    void setWide(bool wide) override;

    /// `product` outlives the page.
    void setProduct(const Product& product);

private:
    [[nodiscard]] GtkWidget* newWords();
    void build();

    Shop& shop_;
    Navigator& navigator_;
    RecommendationStrip strip_;
    const Product* product_ = nullptr;
    bool wide_ = false;
    GtkWidget* const stage_;  // picture and words: beside each other where there is room
    GtkWidget* page_ = nullptr;
};

}  // namespace shop
