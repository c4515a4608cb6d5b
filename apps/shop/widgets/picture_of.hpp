#pragma once

#include <gtk/gtk.h>

#include <filesystem>

namespace shop {

/// Writes what the widget shows at present as PNG; false where it shows nothing or the file cannot be written.
bool savePicture(GtkWidget* widget, const std::filesystem::path& file);

}  // namespace shop
