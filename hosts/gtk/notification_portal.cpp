#include "hosts/gtk/notification_portal.hpp"

#include <memory>
#include <utility>

namespace orbinel::hosts {

namespace {

constexpr const char* service = "org.freedesktop.portal.Desktop";
constexpr const char* path = "/org/freedesktop/portal/desktop";
constexpr const char* interface = "org.freedesktop.portal.Notification";
constexpr const char* openAction = "open";
constexpr guint limitMilliseconds = 500;

/// One call of the portal, from the question for the bus to the answer; owns itself until then.
class PortalCall {
public:
    static void make(const char* onInterface, const char* method, GVariant* arguments, NotificationPortal::Done done) {
        auto* call = new PortalCall(onInterface, method, arguments, std::move(done));
        g_bus_get(G_BUS_TYPE_SESSION, call->cancellable_.get(), &PortalCall::connected, call);
    }

    ~PortalCall() {
        g_source_destroy(limit_);
        g_source_unref(limit_);
        g_variant_unref(arguments_);
    }
    PortalCall(const PortalCall&) = delete;
    PortalCall& operator=(const PortalCall&) = delete;

private:
    PortalCall(const char* onInterface, const char* method, GVariant* arguments, NotificationPortal::Done done)
        : interface_(onInterface),
          method_(method),
          arguments_(g_variant_ref_sink(arguments)),
          done_(std::move(done)),
          limit_(g_timeout_source_new(limitMilliseconds)) {
        g_source_set_callback(
            limit_,
            [](gpointer cancellable) -> gboolean {
                g_cancellable_cancel(G_CANCELLABLE(cancellable));
                return G_SOURCE_REMOVE;
            },
            g_object_ref(cancellable_.get()), g_object_unref);
        g_source_attach(limit_, nullptr);
    }

    static void connected(GObject* /*source*/, GAsyncResult* result, gpointer self) noexcept {
        auto* call = static_cast<PortalCall*>(self);
        GError* error = nullptr;
        const ObjectPointer<GDBusConnection> bus(g_bus_get_finish(result, &error));
        if (bus == nullptr) return call->end(error);
        g_dbus_connection_set_exit_on_close(bus.get(), FALSE);
        g_dbus_connection_call(bus.get(), service, path, call->interface_, call->method_, call->arguments_, nullptr,
                               G_DBUS_CALL_FLAGS_NO_AUTO_START, -1, call->cancellable_.get(), &PortalCall::answered,
                               self);
    }

    static void answered(GObject* bus, GAsyncResult* result, gpointer self) noexcept {
        GError* error = nullptr;
        auto* answer = g_dbus_connection_call_finish(G_DBUS_CONNECTION(bus), result, &error);
        if (answer != nullptr) g_variant_unref(answer);
        static_cast<PortalCall*>(self)->end(error);
    }

    void end(GError* error) {
        const std::unique_ptr<PortalCall> self(this);
        std::optional<std::string> failure;
        if (error != nullptr) {
            failure = std::string("The desktop's portal for notifications does not answer: ") + error->message;
            g_error_free(error);
        }
        done_(std::move(failure));
    }

    const char* const interface_;
    const char* const method_;
    GVariant* const arguments_;
    const NotificationPortal::Done done_;
    const ObjectPointer<GCancellable> cancellable_{g_cancellable_new()};
    GSource* const limit_;
};

}  // namespace

NotificationPortal::NotificationPortal(Opened opened) : opened_(std::move(opened)) {
    g_bus_get(G_BUS_TYPE_SESSION, cancellable_.get(), &NotificationPortal::connected, this);
}

NotificationPortal::~NotificationPortal() {
    g_cancellable_cancel(cancellable_.get());
    if (subscription_ != 0) g_dbus_connection_signal_unsubscribe(bus_.get(), subscription_);
}

void NotificationPortal::connected(GObject* /*source*/, GAsyncResult* result, gpointer self) noexcept {
    GError* error = nullptr;
    auto* bus = g_bus_get_finish(result, &error);
    if (bus == nullptr) return g_error_free(error);  // cancelled: the object is gone
    auto& portal = *static_cast<NotificationPortal*>(self);
    portal.bus_.reset(bus);
    if (g_dbus_connection_is_closed(bus)) return;
    g_dbus_connection_set_exit_on_close(bus, FALSE);  // a bus that ends must not end the application
    portal.subscription_ =
        g_dbus_connection_signal_subscribe(bus, service, interface, "ActionInvoked", path, nullptr,
                                           G_DBUS_SIGNAL_FLAGS_NONE, &NotificationPortal::actionInvoked, self, nullptr);
}

void NotificationPortal::look(Done done) const {
    PortalCall::make("org.freedesktop.DBus.Properties", "Get", g_variant_new("(ss)", interface, "version"),
                     std::move(done));
}

void NotificationPortal::show(const Message& message, Done done) const {
    GVariantBuilder entries;
    g_variant_builder_init(&entries, G_VARIANT_TYPE_VARDICT);
    const auto add = [&](const char* key, const char* text) {
        g_variant_builder_add(&entries, "{sv}", key, g_variant_new_string(text));
    };
    add("title", message.title.c_str());
    add("body", message.body.c_str());
    add("default-action", openAction);
    add("default-action-target", message.token.c_str());
    PortalCall::make(interface, "AddNotification", g_variant_new("(sa{sv})", message.identifier.c_str(), &entries),
                     std::move(done));
}

/// (identifier, action, [target, …])
void NotificationPortal::actionInvoked(GDBusConnection* /*bus*/, const char* /*sender*/, const char* /*path*/,
                                       const char* /*interface*/, const char* /*signal*/, GVariant* parameters,
                                       gpointer self) noexcept {
    if (!g_variant_is_of_type(parameters, G_VARIANT_TYPE("(ssav)"))) return;
    const char* action = nullptr;
    GVariantIter* targets = nullptr;
    g_variant_get(parameters, "(&s&sav)", nullptr, &action, &targets);
    GVariant* target = nullptr;
    std::optional<std::string> token;
    if (g_strcmp0(action, openAction) == 0 && g_variant_iter_next(targets, "v", &target)) {
        if (g_variant_is_of_type(target, G_VARIANT_TYPE_STRING)) token = g_variant_get_string(target, nullptr);
        g_variant_unref(target);
    }
    g_variant_iter_free(targets);
    if (token) static_cast<NotificationPortal*>(self)->opened_(std::move(*token));
}

}  // namespace orbinel::hosts
