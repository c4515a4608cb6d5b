#pragma once

#include <gio/gio.h>
#include <signal.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "hosts/gtk/gobject.hpp"

namespace orbinel::hosts {

/// A session bus that this process alone uses, as long as this lives.
class PrivateBus {
public:
    PrivateBus() {
        auto* daemon = popen("dbus-daemon --session --fork --print-address=1 --print-pid=1", "r");
        if (daemon == nullptr) return;
        char address[512] = "";
        if (fscanf(daemon, "%511s %d", address, &pid_) != 2) pid_ = 0;
        pclose(daemon);
        setenv("DBUS_SESSION_BUS_ADDRESS", address, 1);
        connection_.reset(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
        if (connection_ != nullptr) g_dbus_connection_set_exit_on_close(connection_.get(), FALSE);
    }
    ~PrivateBus() {
        setenv("DBUS_SESSION_BUS_ADDRESS", before_.c_str(), 1);
        if (connection_ != nullptr) g_dbus_connection_close_sync(connection_.get(), nullptr, nullptr);
        if (pid_ > 0) kill(pid_, SIGTERM);
    }
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;

    /// Null where there is no bus.
    [[nodiscard]] GDBusConnection* connection() const { return connection_.get(); }

private:
    const std::string before_ = std::getenv("DBUS_SESSION_BUS_ADDRESS");  // run_with_display.sh sets it
    int pid_ = 0;
    ObjectPointer<GDBusConnection> connection_;
};

}  // namespace orbinel::hosts
