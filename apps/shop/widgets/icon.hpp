#pragma once

#include <gtk/gtk.h>

namespace shop {

enum class Symbol { home, heart, fullHeart, bag, bell, person, list, back, plus, minus, cross, truck, phone };

/// A line drawing in the text's colour, so many points wide and high.
GtkWidget* newIcon(Symbol symbol, int size);
void setSymbol(GtkWidget* icon, Symbol symbol);

}  // namespace shop
