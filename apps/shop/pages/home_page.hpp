#pragma once

#include <string>
#include <vector>

#include "shop/pages/page.hpp"
#include "shop/shop.hpp"
#include "shop/widgets/recommendation_strip.hpp"

namespace shop {

/// The catalogue, under the title and the offer that the vendor's panel sets, and what others buy now.
class HomePage final : public Page {
public:
    HomePage(Shop& shop, Navigator& navigator);

    [[nodiscard]] GtkWidget* widget() const override { return page_; }
    [[nodiscard]] std::string title() const override { return "The Pottery"; }
    void shown() override;
    void setWide(bool wide) override;

    /// Of this category only; everything for one that the shop does not have.
    void showCategory(const std::string& category);

    /// Asks anew, since campaigns come with a session.
    void recommend();

private:
    [[nodiscard]] GtkWidget* newHero();
    void addChip(const std::string& text, const std::string& category);
    void showTerms();
    void showProducts();

    Shop& shop_;
    Navigator& navigator_;
    RecommendationStrip strip_;
    std::string category_;  // empty: all
    std::vector<std::pair<std::string, GtkWidget*>> chips_;
    GtkWidget* const chipRow_;
    GtkWidget* const shelf_;
    GtkWidget* const heroPictures_;
    GtkWidget* heroTitle_ = nullptr;
    GtkWidget* heroText_ = nullptr;
    GtkWidget* offer_ = nullptr;
    GtkWidget* hero_ = nullptr;
    GtkWidget* page_ = nullptr;
};

}  // namespace shop
