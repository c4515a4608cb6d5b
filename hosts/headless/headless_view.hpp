#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "orbinel/headless/headless_views.hpp"
#include "orbinel/platform/device.hpp"
#include "orbinel/platform/scheduler.hpp"
#include "orbinel/platform/views.hpp"

namespace orbinel::headless {

/// A number that takes its time to become another, evenly.
class Transition {
public:
    explicit Transition(double value) : from_(value), to_(value) {}

    void begin(double to, double seconds, double now) {
        from_ = at(now);
        to_ = to;
        begin_ = now;
        seconds_ = seconds;
    }
    [[nodiscard]] double at(double now) const {
        return now >= begin_ + seconds_ ? to_ : from_ + (to_ - from_) * (now - begin_) / seconds_;
    }
    [[nodiscard]] double target() const { return to_; }

private:
    double from_;
    double to_;
    double begin_ = 0;
    double seconds_ = 0;
};

class HeadlessView;

/// What all views of a window share.
class Display : public std::enable_shared_from_this<Display> {
public:
    Display(std::shared_ptr<platform::Scheduler> scheduler, std::shared_ptr<platform::Device> device);

    [[nodiscard]] platform::Rectangle window() const;
    [[nodiscard]] platform::Rectangle safeArea() const;
    [[nodiscard]] platform::Scheduler& scheduler() const { return *scheduler_; }

    /// Something may be seen anew: it is drawn on the main queue.
    void changed();

    void setRoot(const std::shared_ptr<HeadlessView>& root) { root_ = root; }

private:
    const std::shared_ptr<platform::Scheduler> scheduler_;
    const std::shared_ptr<platform::Device> device_;
    std::weak_ptr<HeadlessView> root_;
    bool drawingIsDue_ = false;
};

class HeadlessView final : public platform::View, public std::enable_shared_from_this<HeadlessView> {
public:
    /// Called where the view can be seen at this size, after a change.
    using Draw = std::function<void(double width, double height)>;

    explicit HeadlessView(std::shared_ptr<Display> display) : display_(std::move(display)) {}

    void setTag(std::int32_t tag) noexcept override { tag_ = tag; }
    void setAlpha(double alpha) noexcept override;
    void fadeTo(double alpha, double seconds, std::function<void()> completion) noexcept override;
    void addChild(const std::shared_ptr<platform::View>& child) noexcept override;
    void removeFromParent() noexcept override;
    [[nodiscard]] std::shared_ptr<platform::View> findTag(std::int32_t tag) noexcept override;
    void setConstraints(std::vector<platform::LayoutConstraint> constraints) noexcept override;
    void setVerticalOffset(double points, double seconds) noexcept override;
    [[nodiscard]] platform::Rectangle frame() const noexcept override;

    void setPressed(std::function<void()> pressed) { pressed_ = std::move(pressed); }
    void setDraw(Draw draw) { draw_ = std::move(draw); }

    /// This view and all in it, from the back to the front.
    void walk(const std::function<void(HeadlessView& view, std::size_t depth)>& visit, std::size_t depth = 0);
    void draw();
    /// Presses it; false where it is no button or cannot be touched.
    bool press();
    [[nodiscard]] bool isVisible() const;
    [[nodiscard]] HeadlessViewFacts facts(std::size_t depth) const;

private:
    void completeEarlierFade();
    [[nodiscard]] bool isWithin(const HeadlessView& view) const;

    const std::shared_ptr<Display> display_;
    std::weak_ptr<HeadlessView> parent_;
    std::vector<std::shared_ptr<HeadlessView>> children_;
    std::int32_t tag_ = 0;
    Transition alpha_{1};
    Transition offset_{0};
    std::vector<platform::LayoutConstraint> constraints_;
    std::function<void()> pressed_;
    Draw draw_;

    std::function<void()> fadeCompletion_;
    platform::Ticket fade_;
};

}  // namespace orbinel::headless
