#include "hosts/headless/headless_view.hpp"

#include <algorithm>
#include <cmath>
#include <utility>

#include "hosts/common/frame_solver.hpp"

namespace orbinel::headless {

namespace {

using std::chrono::milliseconds;

constexpr double longestSeconds = 3600;

/// NaN counts as none.
double secondsToTake(double seconds) { return seconds > 0 ? std::min(seconds, longestSeconds) : 0; }

milliseconds inMilliseconds(double seconds) { return milliseconds{std::llround(seconds * 1000)}; }

}  // namespace

Display::Display(std::shared_ptr<platform::Scheduler> scheduler, std::shared_ptr<platform::Device> device)
    : scheduler_(std::move(scheduler)), device_(std::move(device)) {}

platform::Rectangle Display::window() const {
    const auto screen = device_->facts()->screen.value_or(platform::ScreenFacts{});
    return {0, 0, screen.width, screen.height};
}

platform::Rectangle Display::safeArea() const {
    const auto covered = device_->facts()->safeArea.value_or(platform::SafeArea{});
    auto safe = window();
    safe.y += covered.top;
    safe.height = std::max(safe.height - covered.top - covered.bottom, 0.0);
    return safe;
}

void Display::changed() {
    if (std::exchange(drawingIsDue_, true)) return;
    scheduler_->postMain([weak = weak_from_this()] {
        const auto display = weak.lock();
        if (display == nullptr) return;
        display->drawingIsDue_ = false;
        if (const auto root = display->root_.lock()) root->draw();
    });
}

void HeadlessView::setAlpha(double alpha) noexcept {
    completeEarlierFade();
    alpha_.begin(alpha, 0, display_->scheduler().now());
    display_->changed();
}

void HeadlessView::fadeTo(double alpha, double seconds, std::function<void()> completion) noexcept {
    completeEarlierFade();
    seconds = secondsToTake(seconds);
    alpha_.begin(alpha, seconds, display_->scheduler().now());
    fadeCompletion_ = std::move(completion);
    fade_ = display_->scheduler().postMainAfter(inMilliseconds(seconds), [this] {
        const auto kept = shared_from_this();  // the completion may let go of the view
        if (const auto completed = std::exchange(fadeCompletion_, nullptr)) completed();
    });
    display_->changed();
}

void HeadlessView::completeEarlierFade() {
    fade_.cancel();
    auto completion = std::exchange(fadeCompletion_, nullptr);
    if (completion == nullptr) return;
    display_->scheduler().postMain([view = weak_from_this(), completed = std::move(completion)] {
        if (const auto kept = view.lock()) completed();
    });
}

void HeadlessView::addChild(const std::shared_ptr<platform::View>& child) noexcept {
    const auto view = std::dynamic_pointer_cast<HeadlessView>(child);
    if (view == nullptr || isWithin(*view)) return;
    view->removeFromParent();
    view->parent_ = weak_from_this();
    children_.push_back(view);
    display_->changed();
}

bool HeadlessView::isWithin(const HeadlessView& view) const {
    const auto parent = parent_.lock();
    return this == &view || (parent != nullptr && parent->isWithin(view));
}

void HeadlessView::removeFromParent() noexcept {
    const auto parent = parent_.lock();
    parent_.reset();
    if (parent == nullptr) return;
    const auto own = shared_from_this();  // the parent's may be the last reference
    std::erase(parent->children_, own);
}

std::shared_ptr<platform::View> HeadlessView::findTag(std::int32_t tag) noexcept {
    if (tag_ == tag) return shared_from_this();
    for (const auto& child : children_) {
        if (auto found = child->findTag(tag)) return found;
    }
    return nullptr;
}

void HeadlessView::setConstraints(std::vector<platform::LayoutConstraint> constraints) noexcept {
    constraints_ = std::move(constraints);
    display_->changed();
}

void HeadlessView::setVerticalOffset(double points, double seconds) noexcept {
    offset_.begin(points, secondsToTake(seconds), display_->scheduler().now());
}

platform::Rectangle HeadlessView::frame() const noexcept {
    const auto parent = parent_.lock();
    auto frame =
        parent != nullptr ? hosts::solveFrame(constraints_, parent->frame(), display_->safeArea()) : display_->window();
    frame.y += offset_.at(display_->scheduler().now());
    return frame;
}

void HeadlessView::walk(const std::function<void(HeadlessView& view, std::size_t depth)>& visit, std::size_t depth) {
    visit(*this, depth);
    const auto children = children_;  // a visitor may change them
    for (const auto& child : children) child->walk(visit, depth + 1);
}

void HeadlessView::draw() {
    walk([](HeadlessView& view, std::size_t) {
        if (!view.draw_ || !view.isVisible()) return;
        const auto place = view.frame();
        view.draw_(place.width, place.height);
    });
}

bool HeadlessView::press() {
    if (!pressed_ || !isVisible()) return false;
    const auto pressed = pressed_;  // it may let go of the button
    pressed();
    return true;
}

bool HeadlessView::isVisible() const {
    const auto parent = parent_.lock();
    return alpha_.target() > 0 && (parent == nullptr || parent->isVisible());
}

HeadlessViewFacts HeadlessView::facts(std::size_t depth) const {
    return {tag_, depth, frame(), alpha_.at(display_->scheduler().now()), isVisible()};
}

}  // namespace orbinel::headless
