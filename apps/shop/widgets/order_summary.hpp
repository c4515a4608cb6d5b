#pragma once

#include <gtk/gtk.h>

#include "shop/model/cart.hpp"

namespace shop {

/// Fills a box with what an order comes to, line by line.
void showSummary(GtkWidget* box, const CartTotals& totals);

}  // namespace shop
