#pragma once

#include <gtk/gtk.h>

#include "shop/model/product.hpp"
#include "shop/pages/page.hpp"
#include "shop/shop.hpp"
#include "shop/widgets/ui.hpp"

namespace shop {

/// A product to press, with a heart to wish for it. Its name has so many lines at most. `product` outlives it.
GtkWidget* newProductCard(const Product& product, Shop& shop, Navigator& navigator, int nameLines, Action opened);

/// A round button that wishes for a product, or no more.
GtkWidget* newHeart(const Product& product, Shop& shop, Navigator& navigator);

/// An empty page's words: what is missing, and the way out.
GtkWidget* newEmptyState(const std::string& title, const std::string& text, GtkWidget* button);

}  // namespace shop
