#pragma once

#include <gtk/gtk.h>

#include <functional>

#include "hosts/gtk/deferred_calls.hpp"

namespace orbinel::hosts {

/// A number that moves over time: with the widget's frames while it is seen, and to its end in time in any case.
///
/// Threads: main thread only. Completions run from the main loop; destroying the animation drops them.
class Animation {
public:
    Animation(GtkWidget* widget, double value, std::function<void(double)> apply);
    ~Animation();
    Animation(const Animation&) = delete;
    Animation& operator=(const Animation&) = delete;

    [[nodiscard]] double value() const noexcept { return value_; }

    /// Begins where the number is now. What was moving before stops there, and its completion runs.
    void moveTo(double target, double seconds, std::function<void()> completion = nullptr);

private:
    static gboolean tick(GtkWidget* widget, GdkFrameClock* clock, gpointer self) noexcept;
    static gboolean timeIsOver(gpointer self) noexcept;

    void set(double value);
    void stop();

    GtkWidget* const widget_;
    const std::function<void(double)> apply_;
    double value_;
    double from_ = 0;
    double target_ = 0;
    gint64 began_ = 0;     // microseconds
    gint64 duration_ = 0;  // microseconds
    guint tick_ = 0;
    guint timer_ = 0;
    std::function<void()> completion_;
    DeferredCalls overtaken_;
};

}  // namespace orbinel::hosts
