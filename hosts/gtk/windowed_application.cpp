#include "hosts/gtk/windowed_application.hpp"

#include <gio/gdesktopappinfo.h>

#include <initializer_list>
#include <utility>

namespace orbinel::hosts {

namespace {

using Completion = std::function<void(bool opened)>;

ObjectPointer<GAppLaunchContext> launchContext() {
    auto* display = gdk_display_get_default();
    return ObjectPointer<GAppLaunchContext>(
        display != nullptr ? G_APP_LAUNCH_CONTEXT(gdk_display_get_app_launch_context(display)) : nullptr);
}

void launched(GObject* /*source*/, GAsyncResult* result, gpointer data) noexcept {
    const std::unique_ptr<Completion> completion(static_cast<Completion*>(data));
    const bool opened = g_app_info_launch_default_for_uri_finish(result, nullptr) != FALSE;
    if (*completion) (*completion)(opened);
}

/// Starts the first of these that the desktop has, by the names of their desktop entries.
void launchFirst(std::initializer_list<const char*> entries) {
    for (const auto* entry : entries) {
        const ObjectPointer<GDesktopAppInfo> application(g_desktop_app_info_new(entry));
        if (application == nullptr) continue;
        g_app_info_launch(G_APP_INFO(application.get()), nullptr, launchContext().get(), nullptr);
        return;
    }
}

}  // namespace

WindowedApplication::WindowedApplication(GtkWindow* window, std::shared_ptr<platform::Application> package,
                                         std::shared_ptr<platform::NotificationCentre> notifications)
    : ForwardingApplication(std::move(package)), notifications_(notifications), foreground_(std::move(notifications)) {
    int width = 0;
    int height = 0;
    gtk_window_get_default_size(window, &width, &height);
    if (width > 0 && height > 0) portrait_ = upright_ = height >= width;
    signals_.connect(window, "realize", G_CALLBACK(&WindowedApplication::realized));
    if (gtk_widget_get_realized(GTK_WIDGET(window))) followShape(GTK_WIDGET(window));
}

void WindowedApplication::openUrl(const std::string& url, Completion completion) noexcept {
    g_app_info_launch_default_for_uri_async(url.c_str(), launchContext().get(), nullptr, &launched,
                                            new Completion(std::move(completion)));
}

void WindowedApplication::openSettings() noexcept {
    launchFirst({"org.gnome.Settings.desktop", "gnome-control-center.desktop", "systemsettings.desktop",
                 "xfce-settings-manager.desktop"});
}

void WindowedApplication::openNotificationSettings() noexcept {
    launchFirst({"gnome-notifications-panel.desktop", "kcm_notifications.desktop", "xfce4-notifyd-config.desktop",
                 "org.gnome.Settings.desktop", "gnome-control-center.desktop", "systemsettings.desktop"});
}

void WindowedApplication::realized(GtkWidget* window, gpointer self) noexcept {
    Signals::ownerOf(self).followShape(window);
}

void WindowedApplication::laidOut(GdkSurface* /*surface*/, int width, int height, gpointer self) noexcept {
    auto& application = Signals::ownerOf(self);
    application.setShape(width, height);
}

void WindowedApplication::followShape(GtkWidget* window) {
    auto* surface = gtk_native_get_surface(GTK_NATIVE(window));
    const int width = gdk_surface_get_width(surface);
    const int height = gdk_surface_get_height(surface);
    if (width > 1 && height > 1) setShape(width, height);
    signals_.connect(surface, "layout", G_CALLBACK(&WindowedApplication::laidOut));
}

/// Told at the next turn of the main loop: GTK is in the middle of laying out.
void WindowedApplication::setShape(int width, int height) {
    upright_ = height >= width;
    if (!turns_.empty()) return;
    turns_.add([this] {
        const auto notifications = notifications_;  // an observer may let go of this
        if (portrait_.exchange(upright_) == upright_) return;
        notifications->post(platform::notification_names::orientationDidChange, {});
    });
}

}  // namespace orbinel::hosts
