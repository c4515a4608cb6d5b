#include "hosts/gtk/windowed_application.hpp"

#include <gio/gdesktopappinfo.h>

#include <initializer_list>
#include <utility>

namespace orbinel::hosts {

namespace {

using platform::ApplicationState;
using Completion = std::function<void(bool opened)>;

constexpr guint gapMilliseconds = 250;

bool isAnyWindowActive() {
    auto* windows = gtk_window_get_toplevels();
    for (guint i = 0; i < g_list_model_get_n_items(windows); ++i) {
        const ObjectPointer<GtkWindow> window(GTK_WINDOW(g_list_model_get_item(windows, i)));
        if (gtk_window_is_active(window.get())) return true;
    }
    return false;
}

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

WindowedApplication::WindowedApplication(GtkWindow* window, std::shared_ptr<const platform::Application> package,
                                         std::shared_ptr<platform::NotificationCentre> notifications)
    : package_(std::move(package)), notifications_(std::move(notifications)) {
    auto* windows = gtk_window_get_toplevels();
    signals_.connect(windows, "items-changed", G_CALLBACK(&WindowedApplication::windowsChanged));
    follow(windows, 0, g_list_model_get_n_items(windows));
    int width = 0;
    int height = 0;
    gtk_window_get_default_size(window, &width, &height);
    if (width > 0 && height > 0) portrait_ = upright_ = height >= width;
    signals_.connect(window, "realize", G_CALLBACK(&WindowedApplication::realized));
    if (gtk_widget_get_realized(GTK_WIDGET(window))) followShape(GTK_WIDGET(window));
    lookSoon();
}

WindowedApplication::~WindowedApplication() {
    if (gap_ != 0) g_source_remove(gap_);
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

void WindowedApplication::windowsChanged(GListModel* windows, guint position, guint /*removed*/, guint added,
                                         gpointer self) noexcept {
    auto& application = Signals::ownerOf(self);
    application.follow(windows, position, added);
    application.lookSoon();
}

void WindowedApplication::activeChanged(GtkWindow* /*window*/, GParamSpec* /*property*/, gpointer self) noexcept {
    Signals::ownerOf(self).lookSoon();
}

void WindowedApplication::realized(GtkWidget* window, gpointer self) noexcept {
    Signals::ownerOf(self).followShape(window);
}

void WindowedApplication::laidOut(GdkSurface* /*surface*/, int width, int height, gpointer self) noexcept {
    auto& application = Signals::ownerOf(self);
    application.upright_ = height >= width;
    application.lookSoon();
}

void WindowedApplication::follow(GListModel* windows, guint position, guint count) {
    for (guint i = position; i < position + count; ++i) {
        const ObjectPointer<GtkWindow> window(GTK_WINDOW(g_list_model_get_item(windows, i)));
        signals_.connect(window.get(), "notify::is-active", G_CALLBACK(&WindowedApplication::activeChanged));
    }
}

void WindowedApplication::followShape(GtkWidget* window) {
    auto* surface = gtk_native_get_surface(GTK_NATIVE(window));
    const int width = gdk_surface_get_width(surface);
    const int height = gdk_surface_get_height(surface);
    if (width > 1 && height > 1) upright_ = height >= width;
    signals_.connect(surface, "layout", G_CALLBACK(&WindowedApplication::laidOut));
    lookSoon();
}

void WindowedApplication::lookSoon() {
    if (looks_.empty()) looks_.add([this] { look(); });
}

void WindowedApplication::look() {
    namespace names = platform::notification_names;
    const bool active = isAnyWindowActive();
    if (active && gap_ != 0) g_source_remove(std::exchange(gap_, 0));
    if (!active) waitForAnotherWindow();
    const bool activated = active && state_.exchange(ApplicationState::active) != ApplicationState::active;
    const bool turned = portrait_.exchange(upright_) != upright_;
    const auto notifications = notifications_;  // an observer may let go of this
    if (turned) notifications->post(names::orientationDidChange, {});
    if (activated) notifications->post(names::didBecomeActive, {});
}

void WindowedApplication::waitForAnotherWindow() {
    if (gap_ != 0 || state_ != ApplicationState::active) return;
    gap_ = g_timeout_add(gapMilliseconds, &WindowedApplication::gapIsOver, this);
}

gboolean WindowedApplication::gapIsOver(gpointer self) noexcept {
    auto& application = *static_cast<WindowedApplication*>(self);
    application.gap_ = 0;
    application.state_ = ApplicationState::inactive;
    return G_SOURCE_REMOVE;
}

}  // namespace orbinel::hosts
