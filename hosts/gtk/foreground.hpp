#pragma once

#include <gtk/gtk.h>

#include <atomic>
#include <memory>

#include "hosts/gtk/deferred_calls.hpp"
#include "hosts/gtk/gobject.hpp"
#include "hosts/gtk/screen_lock.hpp"
#include "orbinel/platform/application.hpp"
#include "orbinel/platform/notification_centre.hpp"

namespace orbinel::hosts {

/// Whether the application is in the foreground, as the platform's notifications tell it.
///
/// It becomes active when one of its windows does, at the next turn of the main loop. It enters the background when
/// none has been active for one second, at once when the screen is locked, and before it terminates, which is when the
/// default GApplication shuts down. The keyboard passes from one window to another with a gap between, so that the
/// first quarter of that second is no change of state at all.
///
/// Threads: main thread only, but for `state`.
class Foreground {
public:
    explicit Foreground(std::shared_ptr<platform::NotificationCentre> notifications);
    ~Foreground();
    Foreground(const Foreground&) = delete;
    Foreground& operator=(const Foreground&) = delete;

    [[nodiscard]] platform::ApplicationState state() const noexcept { return state_; }

private:
    using Signals = SignalConnections<Foreground>;

    static void windowsChanged(GListModel* windows, guint position, guint removed, guint added, gpointer self) noexcept;
    static void activeChanged(GtkWindow*, GParamSpec*, gpointer self) noexcept;
    static void shutDown(GApplication*, gpointer self) noexcept;
    static gboolean gapIsOver(gpointer self) noexcept;
    static gboolean awayForLong(gpointer self) noexcept;

    void follow(GListModel* windows, guint position, guint count);
    void setLocked(bool locked);
    void lookSoon();
    void look();
    void waitForAnotherWindow();
    void stopWaiting();
    void becomeActive();
    void enterBackground();

    const std::shared_ptr<platform::NotificationCentre> notifications_;
    std::atomic<platform::ApplicationState> state_{platform::ApplicationState::inactive};
    bool entered_ = false;  // the foreground, and has not left it
    bool locked_ = false;
    guint gap_ = 0;  // timers
    guint away_ = 0;
    DeferredCalls looks_;
    ScreenLock screenLock_{[this](bool locked) { setLocked(locked); }};
    Signals signals_{*this};
};

}  // namespace orbinel::hosts
