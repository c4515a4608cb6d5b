#pragma once

#include <gtk/gtk.h>

#include "hosts/gtk/gobject.hpp"

namespace orbinel::tool {

/// What the widget draws at present. Null where it is not shown, and where it draws nothing.
[[nodiscard]] hosts::ObjectPointer<GdkTexture> pictureOf(GtkWidget* widget);

/// Whether any pixel is visible; null has none.
[[nodiscard]] bool isSeen(GdkTexture* picture);

/// Whether both have the same pixels; null is equal to nothing.
[[nodiscard]] bool areEqual(GdkTexture* one, GdkTexture* other);

}  // namespace orbinel::tool
