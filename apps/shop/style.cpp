#include "shop/style.hpp"

#include <gtk/gtk.h>

#include "shop/widgets/ui.hpp"

namespace shop {

namespace {

void addProvider(GtkCssProvider* provider) {
    gtk_style_context_add_provider_for_display(gdk_display_get_default(), GTK_STYLE_PROVIDER(provider),
                                               GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
}

void loadPalette(GtkCssProvider* palette) {
    gboolean dark = FALSE;
    g_object_get(gtk_settings_get_default(), "gtk-application-prefer-dark-theme", &dark, nullptr);
    gtk_css_provider_load_from_resource(palette, dark != FALSE ? "/shop/dark.css" : "/shop/light.css");
}

}  // namespace

void installStyle(bool dark) {
    auto* settings = gtk_settings_get_default();
    if (dark) g_object_set(settings, "gtk-application-prefer-dark-theme", TRUE, nullptr);
    const ObjectPointer<GtkCssProvider> style(gtk_css_provider_new());
    const ObjectPointer<GtkCssProvider> palette(gtk_css_provider_new());
    gtk_css_provider_load_from_resource(style.get(), "/shop/style.css");
    addProvider(style.get());
    addProvider(palette.get());
    loadPalette(palette.get());
    connect(settings, "notify::gtk-application-prefer-dark-theme", [kept = palette.get()] { loadPalette(kept); });
}

}  // namespace shop
