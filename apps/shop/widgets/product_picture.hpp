#pragma once

#include <gtk/gtk.h>

#include "shop/model/product.hpp"

namespace shop {

/// The product, drawn, on a ground of its tint; at least so many points wide and high. `product` outlives it.
GtkWidget* newProductPicture(const Product& product, int leastWidth, int leastHeight);

/// The drawing alone.
GtkWidget* newProductDrawing(const Product& product, int size);

}  // namespace shop
