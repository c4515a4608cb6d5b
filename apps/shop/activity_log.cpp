#include "shop/activity_log.hpp"

#include <glib.h>

#include <utility>

namespace shop {

namespace {

using Holder = std::weak_ptr<ActivityLog>;

constexpr std::size_t mostBytes = 600;  // of one line: nobody reads more in a drawer

std::string timeOfDay() {
    const std::unique_ptr<GDateTime, decltype(&g_date_time_unref)> now(g_date_time_new_now_local(), &g_date_time_unref);
    const std::unique_ptr<char, decltype(&g_free)> text(g_date_time_format(now.get(), "%H:%M:%S"), &g_free);
    return text != nullptr ? text.get() : "";
}

/// Labels take valid UTF-8 only, and a cut may fall into a character.
std::string shown(std::string_view text) {
    const auto kept = text.substr(0, mostBytes);
    const std::unique_ptr<char, decltype(&g_free)> valid(
        g_utf8_make_valid(kept.data(), static_cast<gssize>(kept.size())), &g_free);
    return std::string(valid.get()) + (kept.size() < text.size() ? " …" : "");
}

}  // namespace

void ActivityLog::add(Activity::Kind kind, std::string_view text) {
    Activity activity{kind, shown(text), timeOfDay()};
    const std::lock_guard lock(mutex_);
    waiting_.push_back(std::move(activity));
    if (waiting_.size() > 1) return;  // its turn is on the way
    g_idle_add_full(
        G_PRIORITY_DEFAULT_IDLE,
        [](gpointer data) -> gboolean {
            if (const auto log = static_cast<Holder*>(data)->lock()) log->handOver();
            return G_SOURCE_REMOVE;
        },
        new Holder(weak_from_this()), [](gpointer data) { delete static_cast<Holder*>(data); });
}

void ActivityLog::handOver() {
    std::vector<Activity> activities;
    {
        const std::lock_guard lock(mutex_);
        activities.swap(waiting_);
    }
    if (!follower_) return;
    for (const auto& activity : activities) follower_(activity);
}

}  // namespace shop
