#include "hosts/gtk/foreground.hpp"

#include <utility>

namespace orbinel::hosts {

namespace {

namespace names = platform::notification_names;
using platform::ApplicationState;

constexpr guint gapMilliseconds = 250;
constexpr guint awayMilliseconds = 1000;

bool isAnyWindowActive() {
    auto* windows = gtk_window_get_toplevels();
    for (guint i = 0; i < g_list_model_get_n_items(windows); ++i) {
        const ObjectPointer<GtkWindow> window(GTK_WINDOW(g_list_model_get_item(windows, i)));
        if (gtk_window_is_active(window.get())) return true;
    }
    return false;
}

void stop(guint& timer) {
    if (timer != 0) g_source_remove(std::exchange(timer, 0));
}

}  // namespace

Foreground::Foreground(std::shared_ptr<platform::NotificationCentre> notifications)
    : notifications_(std::move(notifications)) {
    auto* windows = gtk_window_get_toplevels();
    signals_.connect(windows, "items-changed", G_CALLBACK(&Foreground::windowsChanged));
    follow(windows, 0, g_list_model_get_n_items(windows));
    if (auto* application = g_application_get_default()) {
        signals_.connect(application, "shutdown", G_CALLBACK(&Foreground::shutDown));
    }
    lookSoon();
}

Foreground::~Foreground() { stopWaiting(); }

void Foreground::windowsChanged(GListModel* windows, guint position, guint /*removed*/, guint added,
                                gpointer self) noexcept {
    auto& foreground = Signals::ownerOf(self);
    foreground.follow(windows, position, added);
    foreground.lookSoon();
}

void Foreground::activeChanged(GtkWindow* /*window*/, GParamSpec* /*property*/, gpointer self) noexcept {
    Signals::ownerOf(self).lookSoon();
}

void Foreground::follow(GListModel* windows, guint position, guint count) {
    for (guint i = position; i < position + count; ++i) {
        const ObjectPointer<GtkWindow> window(GTK_WINDOW(g_list_model_get_item(windows, i)));
        signals_.connect(window.get(), "notify::is-active", G_CALLBACK(&Foreground::activeChanged));
    }
}

void Foreground::setLocked(bool locked) {
    locked_ = locked;
    if (locked) return enterBackground();
    lookSoon();
}

void Foreground::lookSoon() {
    if (looks_.empty()) looks_.add([this] { look(); });
}

void Foreground::look() {
    if (locked_) return;
    if (!isAnyWindowActive()) return waitForAnotherWindow();
    becomeActive();
}

void Foreground::becomeActive() {
    stopWaiting();
    const bool wasActive = state_.exchange(ApplicationState::active) == ApplicationState::active;
    entered_ = true;
    const auto notifications = notifications_;  // an observer may let go of this
    if (!wasActive) notifications->post(names::didBecomeActive, {});
}

void Foreground::waitForAnotherWindow() {
    if (gap_ != 0 || state_ != ApplicationState::active) return;
    gap_ = g_timeout_add(gapMilliseconds, &Foreground::gapIsOver, this);
    away_ = g_timeout_add(awayMilliseconds, &Foreground::awayForLong, this);
}

void Foreground::stopWaiting() {
    stop(gap_);
    stop(away_);
}

gboolean Foreground::gapIsOver(gpointer self) noexcept {
    auto& foreground = *static_cast<Foreground*>(self);
    foreground.gap_ = 0;
    foreground.state_ = ApplicationState::inactive;
    return G_SOURCE_REMOVE;
}

gboolean Foreground::awayForLong(gpointer self) noexcept {
    auto& foreground = *static_cast<Foreground*>(self);
    foreground.away_ = 0;
    foreground.enterBackground();
    return G_SOURCE_REMOVE;
}

void Foreground::enterBackground() {
    stopWaiting();
    state_ = ApplicationState::background;
    const auto notifications = notifications_;
    if (std::exchange(entered_, false)) notifications->post(names::didEnterBackground, {});
}

void Foreground::shutDown(GApplication* /*application*/, gpointer self) noexcept {
    auto& foreground = Signals::ownerOf(self);
    const auto notifications = foreground.notifications_;
    foreground.enterBackground();
    notifications->post(names::willTerminate, {});
}

}  // namespace orbinel::hosts
