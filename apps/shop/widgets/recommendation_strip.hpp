#pragma once

#include <gtk/gtk.h>

#include <functional>
#include <string>
#include <vector>

#include "shop/pages/page.hpp"
#include "shop/shop.hpp"

namespace shop {

/// Recommended products in a row that scrolls sideways; invisible while there are none.
///
/// Threads: main. It has to outlive the answers that it shows.
class RecommendationStrip {
public:
    using Chosen = std::function<void(const Product& product)>;

    RecommendationStrip(Shop& shop, Navigator& navigator, const std::string& title, Chosen chosen);

    [[nodiscard]] GtkWidget* widget() const { return box_; }

    /// Products that the shop does not sell are passed over.
    void show(const std::vector<std::string>& productIds);
    void clear() { show({}); }

private:
    Shop& shop_;
    Navigator& navigator_;
    const Chosen chosen_;
    GtkWidget* const box_;
    GtkWidget* const row_;
};

}  // namespace shop
