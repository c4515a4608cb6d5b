#pragma once

#include <gtk/gtk.h>

#include <string>

#include "shop/widgets/ui.hpp"

namespace shop {

/// A check box of our own: the box fills from its middle, then the tick draws itself.
///
/// Pressed by the pointer anywhere on it, also on its text, and by space or enter while it has the focus. A screen
/// reader meets a check box with that text and its state. Where the person has switched animations off, it changes at
/// once. The box takes the colours of the CSS nodes' classes: "shop-check-box", and "checked" while it is.
GtkWidget* newCheckBox(const std::string& text);

[[nodiscard]] bool isChecked(GtkWidget* checkBox);

/// By the program: moves as well, and is told like a press.
void setChecked(GtkWidget* checkBox, bool checked);

/// Called after each change.
void onToggled(GtkWidget* checkBox, Action action);

}  // namespace shop
