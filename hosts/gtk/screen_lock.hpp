#pragma once

#include <gio/gio.h>

#include <functional>
#include <vector>

#include "hosts/gtk/gobject.hpp"

namespace orbinel::hosts {

/// Tells when the desktop locks the screen and when it unlocks it; silent where no session bus says so.
///
/// Threads: main thread only, which has to run the main loop. Nothing waits for the bus, and nothing is started by it.
class ScreenLock {
public:
    explicit ScreenLock(std::function<void(bool locked)> changed);
    ~ScreenLock();
    ScreenLock(const ScreenLock&) = delete;
    ScreenLock& operator=(const ScreenLock&) = delete;

private:
    static void connected(GObject*, GAsyncResult* result, gpointer self) noexcept;
    static void activeChanged(GDBusConnection*, const char* sender, const char* path, const char* interface,
                              const char* signal, GVariant* parameters, gpointer self) noexcept;

    const std::function<void(bool)> changed_;
    const ObjectPointer<GCancellable> cancellable_{g_cancellable_new()};
    ObjectPointer<GDBusConnection> bus_;
    std::vector<guint> subscriptions_;
};

}  // namespace orbinel::hosts
