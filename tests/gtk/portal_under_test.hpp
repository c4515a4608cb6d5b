#pragma once

#include <gio/gio.h>

#include <string>
#include <vector>

#include "hosts/gtk/gobject.hpp"

namespace orbinel::hosts {

/// A desktop's portal for notifications, as long as this lives. A person opens what it shows by `open`.
class PortalUnderTest {
public:
    explicit PortalUnderTest(GDBusConnection* bus) : bus_(bus) {
        auto* node = g_dbus_node_info_new_for_xml(
            "<node><interface name='org.freedesktop.portal.Notification'>"
            "<method name='AddNotification'><arg type='s' direction='in'/><arg type='a{sv}' direction='in'/></method>"
            "<property name='version' type='u' access='read'/></interface></node>",
            nullptr);
        static constexpr GDBusInterfaceVTable vtable{&PortalUnderTest::called, &PortalUnderTest::asked, nullptr, {}};
        object_ = g_dbus_connection_register_object(bus, path, node->interfaces[0], &vtable, this, nullptr, nullptr);
        g_dbus_node_info_unref(node);
        request("RequestName", g_variant_new("(su)", service, 0));
    }
    ~PortalUnderTest() {
        release();
        request("ReleaseName", g_variant_new("(s)", service));
        g_dbus_connection_unregister_object(bus_, object_);
    }
    PortalUnderTest(const PortalUnderTest&) = delete;
    PortalUnderTest& operator=(const PortalUnderTest&) = delete;

    /// "identifier: title, body" of each notification.
    [[nodiscard]] const std::vector<std::string>& shown() const { return shown_; }

    /// Opens the notification, which says by the target what it was; without one, the latest one that was shown.
    void open(const char* identifier, const char* target = nullptr) {
        GVariantBuilder targets;
        g_variant_builder_init(&targets, G_VARIANT_TYPE("av"));
        g_variant_builder_add(&targets, "v", g_variant_new_string(target != nullptr ? target : target_.c_str()));
        g_dbus_connection_emit_signal(bus_, nullptr, path, "org.freedesktop.portal.Notification", "ActionInvoked",
                                      g_variant_new("(ssav)", identifier, action_.c_str(), &targets), nullptr);
    }

    /// From now on no call is answered.
    void hold() { holds_ = true; }

private:
    static constexpr const char* service = "org.freedesktop.portal.Desktop";
    static constexpr const char* path = "/org/freedesktop/portal/desktop";

    static std::string textOf(GVariant* entries, const char* key) {
        const char* text = "";
        g_variant_lookup(entries, key, "&s", &text);
        return text;
    }

    static void called(GDBusConnection*, const char*, const char*, const char*, const char*, GVariant* parameters,
                       GDBusMethodInvocation* invocation, gpointer self) {
        auto& portal = *static_cast<PortalUnderTest*>(self);
        if (portal.holds_) return portal.held_.push_back(invocation);
        const char* identifier = nullptr;
        GVariant* entries = nullptr;
        g_variant_get(parameters, "(&s@a{sv})", &identifier, &entries);
        portal.shown_.push_back(std::string(identifier) + ": " + textOf(entries, "title") + ", " +
                                textOf(entries, "body"));
        portal.action_ = textOf(entries, "default-action");
        portal.target_ = textOf(entries, "default-action-target");
        g_variant_unref(entries);
        g_dbus_method_invocation_return_value(invocation, nullptr);
    }

    static GVariant* asked(GDBusConnection*, const char*, const char*, const char*, const char*, GError** error,
                           gpointer self) {
        if (!static_cast<PortalUnderTest*>(self)->holds_) return g_variant_new_uint32(1);
        g_set_error(error, G_IO_ERROR, G_IO_ERROR_FAILED, "stuck");
        return nullptr;
    }

    void request(const char* method, GVariant* arguments) {
        auto* answer =
            g_dbus_connection_call_sync(bus_, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                                        method, arguments, nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr);
        if (answer != nullptr) g_variant_unref(answer);
    }

    void release() {
        for (auto* invocation : held_) g_dbus_method_invocation_return_value(invocation, nullptr);
    }

    GDBusConnection* const bus_;
    guint object_ = 0;
    std::vector<std::string> shown_;
    std::string action_;
    std::string target_;
    bool holds_ = false;
    std::vector<GDBusMethodInvocation*> held_;
};

}  // namespace orbinel::hosts
