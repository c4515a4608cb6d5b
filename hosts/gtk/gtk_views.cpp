#include "hosts/gtk/gtk_views.hpp"

#include <utility>

#include "hosts/gtk/close_button.hpp"
#include "hosts/gtk/gtk_web_view.hpp"

namespace orbinel::hosts {

namespace {

constexpr const char* stackKey = "orbinel-stack";

/// The overlay that earlier views of the same window left in place, or a new one.
ObjectPointer<GtkOverlay> stackOf(GtkWindow* window) {
    if (auto* earlier = g_object_get_data(G_OBJECT(window), stackKey)) return retain(GTK_OVERLAY(earlier));
    auto stack = retain(GTK_OVERLAY(gtk_overlay_new()));
    g_object_set_data_full(G_OBJECT(window), stackKey, g_object_ref(stack.get()), &g_object_unref);
    return stack;
}

bool takesText(GtkWidget* widget) {
    if (widget == nullptr) return false;
    if (GTK_IS_TEXT_VIEW(widget)) return gtk_text_view_get_editable(GTK_TEXT_VIEW(widget)) != FALSE;
    return GTK_IS_EDITABLE(widget) && gtk_editable_get_editable(GTK_EDITABLE(widget)) != FALSE;
}

}  // namespace

GtkViews::GtkViews(GtkWindow* window)
    : window_(window),
      stack_(stackOf(window)),
      curtain_(std::make_shared<GtkView>(platform::Backdrop::clear)),
      overlay_(std::make_shared<GtkView>(platform::Backdrop::clear)) {
    curtain_->addChild(overlay_);
    gtk_overlay_add_overlay(stack_.get(), curtain_->widget());
    signals_.connect(window, "notify::child", G_CALLBACK(&GtkViews::childChanged));
    signals_.connect(window, "notify::focus-widget", G_CALLBACK(&GtkViews::focusChanged));
    signals_.connect(window, "map", G_CALLBACK(&GtkViews::mapped));
    signals_.connect(window, "unmap", G_CALLBACK(&GtkViews::mapped));
    wrapChild();
    mirrorFocus();
}

GtkViews::~GtkViews() {
    if (gtk_widget_get_parent(curtain_->widget()) == GTK_WIDGET(stack_.get())) {
        gtk_overlay_remove_overlay(stack_.get(), curtain_->widget());
    }
}

std::shared_ptr<platform::View> GtkViews::overlay() noexcept { return windowIsThere() ? overlay_ : nullptr; }

void GtkViews::setOverlayVisible(bool visible, double seconds) noexcept {
    curtain_->fadeTo(visible ? 1 : 0, seconds, nullptr);
}

std::shared_ptr<platform::View> GtkViews::makeView(platform::Backdrop backdrop) noexcept {
    return windowIsThere() ? std::make_shared<GtkView>(backdrop) : nullptr;
}

std::shared_ptr<platform::View> GtkViews::makeCloseButton(std::string accessibleName,
                                                          std::function<void()> pressed) noexcept {
    return windowIsThere() ? std::make_shared<CloseButton>(accessibleName, std::move(pressed)) : nullptr;
}

platform::WebViewOrReason GtkViews::makeWebView(platform::WebViewSettings settings,
                                                std::weak_ptr<platform::WebViewDelegate> delegate) noexcept {
    if (!windowIsThere()) return "The application has no window.";
    if (!sandbox_.works()) return "The system does not let the web engine sandbox its processes.";
    return std::make_unique<GtkWebView>(settings, std::move(delegate), keyboard_);
}

void GtkViews::childChanged(GtkWindow* /*window*/, GParamSpec* /*property*/, gpointer self) noexcept {
    Signals::ownerOf(self).wrapChild();
}

void GtkViews::focusChanged(GtkWindow* /*window*/, GParamSpec* /*property*/, gpointer self) noexcept {
    Signals::ownerOf(self).mirrorFocus();
}

void GtkViews::mapped(GtkWidget* /*window*/, gpointer self) noexcept { Signals::ownerOf(self).mirrorFocus(); }

/// A window that was destroyed may stay in memory for a while; it is among the toplevels no more.
bool GtkViews::windowIsThere() const {
    auto* windows = gtk_window_get_toplevels();
    for (guint i = 0; i < g_list_model_get_n_items(windows); ++i) {
        const ObjectPointer<GtkWindow> window(GTK_WINDOW(g_list_model_get_item(windows, i)));
        if (window.get() == window_.get()) return true;
    }
    return false;
}

void GtkViews::wrapChild() {
    auto* window = window_.get();
    auto* stack = GTK_WIDGET(stack_.get());
    if (wrapping_ || !windowIsThere() || gtk_window_get_child(window) == stack) return;
    wrapping_ = true;
    auto* const focus = gtk_window_get_focus(window);
    const auto focused = focus != nullptr ? retain(focus) : nullptr;
    const auto child = retain(gtk_window_get_child(window));
    gtk_window_set_child(window, nullptr);  // a widget has one parent at a time
    gtk_overlay_set_child(stack_.get(), child.get());
    gtk_window_set_child(window, stack);
    if (focused != nullptr && gtk_widget_is_ancestor(focused.get(), stack)) {
        gtk_window_set_focus(window, focused.get());
    }
    wrapping_ = false;
}

void GtkViews::mirrorFocus() {
    auto* window = window_.get();
    const bool shown = window != nullptr && gtk_widget_get_mapped(GTK_WIDGET(window));
    keyboard_->setFieldFocused(shown && takesText(gtk_window_get_focus(window)));
}

}  // namespace orbinel::hosts
