#pragma once

#include <gtk/gtk.h>

namespace shop {

/// A container that gives its one child all the width it has, up to a limit in points, and then centres it.
GtkWidget* newClamp(GtkWidget* child, int mostWidth);

}  // namespace shop
