#pragma once

#include <gtk/gtk.h>

#include "shop/model/product.hpp"

namespace shop {

/// The product, drawn, on a ground of its tint; at least so many points wide and high. `product` outlives it.
GtkWidget* newProductPicture(const Product& product, int leastWidth, int leastHeight);

}  // namespace shop
