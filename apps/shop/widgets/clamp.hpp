#pragma once

#include <gtk/gtk.h>

namespace shop {

/// A container that gives its one child all the width it has, up to a limit in points, and then centres it.
/// A child that needs more is cut off: while a window becomes narrow, its content still has the shape for a wide one.
GtkWidget* newClamp(GtkWidget* child, int mostWidth);

}  // namespace shop
