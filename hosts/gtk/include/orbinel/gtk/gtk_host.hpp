#pragma once

#include <memory>

#include "orbinel/export.hpp"
#include "orbinel/linux/linux_host.hpp"
#include "orbinel/platform/services.hpp"

struct _GtkWindow;

/// The platform's services for an application with a window, on GTK 4 and WebKitGTK 6.0.
namespace orbinel::hosts {

/// The services of `LinuxHost`, of which views, application, pasteboard and accelerometer belong to the window.
///
/// The window's child is wrapped into a GtkOverlay, over which the library lays what it shows: from then on
/// `gtk_window_get_child` answers with that. Children that the application sets later are wrapped, too. A class of
/// windows that forbids `gtk_window_set_child` cannot be used.
///
/// The platform's lifecycle notifications are posted by itself: `UIApplicationDidBecomeActiveNotification` when a window
/// of the application becomes active; `UIApplicationDidEnterBackgroundNotification` when none has been for one second,
/// when the screen is locked, and before `UIApplicationWillTerminateNotification`, which is when the default
/// GApplication (there when this object is made) shuts down; `UIDeviceOrientationDidChangeNotification` when the window
/// turns between upright and lying.
///
/// Web pages run in a sandbox that takes user namespaces; where the system has none, `makeWebView` says so.
///
/// Threads: made, used and destroyed on the thread that runs GTK's main loop, which runs the main queue.
/// Ending: the services live as long as somebody holds them, also longer than this object; without their window,
/// views are nothing.
class ORBINEL_API GtkHost {
public:
    /// `window`: any toplevel window after `gtk_init`, shown or not yet shown; not null. Returns at once.
    explicit GtkHost(_GtkWindow* window, LinuxHostOptions options = {});
    ~GtkHost();
    GtkHost(const GtkHost&) = delete;
    GtkHost& operator=(const GtkHost&) = delete;

    [[nodiscard]] const platform::Services& services() const noexcept;

private:
    struct Parts;

    const std::unique_ptr<Parts> parts_;
};

/// Views over the window alone, for a mixture of hosts. Main thread; GLib's default main context has to be iterated.
[[nodiscard]] ORBINEL_API std::shared_ptr<platform::Views> makeGtkViews(_GtkWindow* window);

}  // namespace orbinel::hosts
