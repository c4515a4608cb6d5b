#include "hosts/gtk/screen_lock.hpp"

#include <utility>

namespace orbinel::hosts {

namespace {

// Each is the name of the service and of its interface.
constexpr const char* services[] = {"org.freedesktop.ScreenSaver", "org.gnome.ScreenSaver"};

}  // namespace

ScreenLock::ScreenLock(std::function<void(bool locked)> changed) : changed_(std::move(changed)) {
    g_bus_get(G_BUS_TYPE_SESSION, cancellable_.get(), &ScreenLock::connected, this);
}

ScreenLock::~ScreenLock() {
    g_cancellable_cancel(cancellable_.get());
    for (const auto subscription : subscriptions_) g_dbus_connection_signal_unsubscribe(bus_.get(), subscription);
}

void ScreenLock::connected(GObject* /*source*/, GAsyncResult* result, gpointer self) noexcept {
    GError* error = nullptr;
    auto* bus = g_bus_get_finish(result, &error);
    if (bus == nullptr) return g_error_free(error);  // cancelled: the object is gone
    auto& lock = *static_cast<ScreenLock*>(self);
    lock.bus_.reset(bus);
    if (g_dbus_connection_is_closed(bus)) return;
    g_dbus_connection_set_exit_on_close(bus, FALSE);  // a bus that ends must not end the application
    for (const auto* service : services) {
        lock.subscriptions_.push_back(g_dbus_connection_signal_subscribe(bus, service, service, "ActiveChanged",
                                                                         nullptr, nullptr, G_DBUS_SIGNAL_FLAGS_NONE,
                                                                         &ScreenLock::activeChanged, self, nullptr));
    }
}

void ScreenLock::activeChanged(GDBusConnection* /*bus*/, const char* /*sender*/, const char* /*path*/,
                               const char* /*interface*/, const char* /*signal*/, GVariant* parameters,
                               gpointer self) noexcept {
    if (!g_variant_is_of_type(parameters, G_VARIANT_TYPE("(b)"))) return;
    gboolean locked = FALSE;
    g_variant_get(parameters, "(b)", &locked);
    static_cast<ScreenLock*>(self)->changed_(locked != FALSE);
}

}  // namespace orbinel::hosts
