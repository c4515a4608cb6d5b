#pragma once

#include <gtk/gtk.h>

#include "shop/model/terms.hpp"

namespace shop {

/// The price, beside the usual one where it is reduced.
GtkWidget* newPrice(const Product& product, const Terms& terms);

}  // namespace shop
