#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "orbinel/export.hpp"
#include "orbinel/linux/linux_host.hpp"
#include "orbinel/platform/services.hpp"
#include "orbinel/value.hpp"

struct _GtkWindow;

/// The platform's services for an application with a window, on GTK 4 and WebKitGTK 6.0.
namespace orbinel::hosts {

/// What a desktop shows of an application outside its windows.
struct DesktopNotification {
    std::string identifier;  // a later one of the same identifier takes this one's place
    std::string title;
    std::string body;
    Dictionary userInfo;  // what the notification centre's delegate is told, such as the payload of a push
};

/// The services of `LinuxHost`, of which views, application, notifications, pasteboard and
/// accelerometer belong to the window.
///
/// The window's child is wrapped into a GtkOverlay, over which the library lays what it shows: from then on
/// `gtk_window_get_child` answers with that. Children that the application sets later are wrapped, too. A class of
/// windows that forbids `gtk_window_set_child` cannot be used.
///
/// The platform's lifecycle notifications are posted by itself: `UIApplicationDidBecomeActiveNotification` when a
/// window of the application becomes active; `UIApplicationDidEnterBackgroundNotification` when none has been for one
/// second, when the screen is locked, and before `UIApplicationWillTerminateNotification`, which is when the default
/// GApplication (there when this object is made) shuts down; `UIDeviceOrientationDidChangeNotification` when the window
/// turns between upright and lying.
///
/// What the desktop has the default GApplication open (G_APPLICATION_HANDLES_OPEN) reaches the application's delegate,
/// and through it the library: web addresses as activities to continue, other URLs with the newest of the operations
/// for them that the delegate implements. Without a delegate (`Application::setDelegate`) it reaches nobody. Links that
/// start the application arrive, too, where this object is made in its "startup". What a delegate implements must not
/// throw, as any handler of GTK's.
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

    /// Has the desktop show a notification, through its portal. When the person opens it, the window is presented and
    /// the notification centre's delegate told (`userNotificationCenter:didReceiveNotificationResponse:…`). While the
    /// application is active the delegate is told at once (`userNotificationCenter:willPresentNotification:…`), and
    /// nothing is shown where it answers yes. Texts that are not UTF-8 are mended; a user info that holds what
    /// JSON cannot is a failure. Main thread; the completion, which may be empty, runs there, possibly inside the call,
    /// with one sentence where nothing was shown: at once where the desktop has no portal, after 500 ms where that is
    /// stuck.
    void present(const DesktopNotification& notification,
                 std::function<void(std::optional<std::string> failure)> completion = {}) noexcept;

private:
    struct Parts;

    const std::unique_ptr<Parts> parts_;
};

/// Views over the window alone, for a mixture of hosts. Main thread; GLib's default main context has to be iterated.
[[nodiscard]] ORBINEL_API std::shared_ptr<platform::Views> makeGtkViews(_GtkWindow* window);

}  // namespace orbinel::hosts
