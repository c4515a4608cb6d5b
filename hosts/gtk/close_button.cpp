#include "hosts/gtk/close_button.hpp"

#include <utility>

namespace orbinel::hosts {

namespace {

constexpr const char* styleClass = "orbinel-close";
// Without a minimum of its own, so that the constraints decide.
constexpr const char* style =
    ".orbinel-close { min-width: 0; min-height: 0; padding: 0; margin: 0; border: none; border-radius: 9999px;"
    " background: rgba(0, 0, 0, 0.6); color: white; box-shadow: none; outline-offset: 0; }"
    ".orbinel-close:hover { background: rgba(0, 0, 0, 0.75); }"
    ".orbinel-close:active { background: rgba(0, 0, 0, 0.9); }";

void addStyle() {
    static const bool added = [] {
        const ObjectPointer<GtkCssProvider> provider(gtk_css_provider_new());
        gtk_css_provider_load_from_data(provider.get(), style, -1);
        gtk_style_context_add_provider_for_display(gdk_display_get_default(), GTK_STYLE_PROVIDER(provider.get()),
                                                   GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
        return true;
    }();
    static_cast<void>(added);
}

}  // namespace

CloseButton::CloseButton(const std::string& accessibleName, std::function<void()> pressed)
    : GtkView(platform::Backdrop::clear), pressed_(std::move(pressed)) {
    addStyle();
    auto* button = gtk_button_new_from_icon_name("window-close-symbolic");
    gtk_widget_add_css_class(button, styleClass);
    gtk_widget_set_focus_on_click(button, FALSE);
    gtk_accessible_update_property(GTK_ACCESSIBLE(button), GTK_ACCESSIBLE_PROPERTY_LABEL, accessibleName.c_str(), -1);
    signals_.connect(button, "clicked", G_CALLBACK(&CloseButton::clicked));
    setContent(button);
}

void CloseButton::clicked(GtkButton* /*button*/, gpointer self) noexcept {
    const auto pressed = SignalConnections<CloseButton>::ownerOf(self).pressed_;  // it may let go of the button
    if (pressed) pressed();
}

}  // namespace orbinel::hosts
