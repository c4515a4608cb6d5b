#include "hosts/gtk/animation.hpp"

#include <algorithm>
#include <utility>

namespace orbinel::hosts {

namespace {

constexpr double longestSeconds = 3600;

}  // namespace

Animation::Animation(GtkWidget* widget, double value, std::function<void(double)> apply)
    : widget_(widget), apply_(std::move(apply)), value_(value) {}

Animation::~Animation() { stop(); }

void Animation::moveTo(double target, double seconds, std::function<void()> completion) {
    stop();
    if (auto overtaken = std::exchange(completion_, nullptr)) overtaken_.add(std::move(overtaken));
    if (!(seconds > 0)) {
        set(target);
        if (completion) overtaken_.add(std::move(completion));
        return;
    }
    from_ = value_;
    target_ = target;
    began_ = g_get_monotonic_time();
    duration_ = static_cast<gint64>(std::min(seconds, longestSeconds) * G_USEC_PER_SEC);
    completion_ = std::move(completion);
    tick_ = gtk_widget_add_tick_callback(widget_, &Animation::tick, this, nullptr);
    timer_ = g_timeout_add(static_cast<guint>(duration_ / 1000), &Animation::timeIsOver, this);
}

gboolean Animation::tick(GtkWidget* /*widget*/, GdkFrameClock* /*clock*/, gpointer self) noexcept {
    auto& animation = *static_cast<Animation*>(self);
    const auto passed = static_cast<double>(g_get_monotonic_time() - animation.began_);
    const double part = std::min(passed / static_cast<double>(animation.duration_), 1.0);
    animation.set(animation.from_ + (animation.target_ - animation.from_) * part);
    return G_SOURCE_CONTINUE;
}

gboolean Animation::timeIsOver(gpointer self) noexcept {
    auto& animation = *static_cast<Animation*>(self);
    animation.timer_ = 0;
    animation.stop();
    animation.set(animation.target_);
    if (const auto completion = std::exchange(animation.completion_, nullptr)) completion();  // may destroy this
    return G_SOURCE_REMOVE;
}

void Animation::set(double value) {
    value_ = value;
    apply_(value);
}

void Animation::stop() {
    if (tick_ != 0) gtk_widget_remove_tick_callback(widget_, std::exchange(tick_, 0));
    if (timer_ != 0) g_source_remove(std::exchange(timer_, 0));
}

}  // namespace orbinel::hosts
