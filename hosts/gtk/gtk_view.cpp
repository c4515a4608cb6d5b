#include "hosts/gtk/gtk_view.hpp"

#include <algorithm>
#include <cmath>
#include <utility>

#include "hosts/common/frame_solver.hpp"

namespace orbinel::hosts {

namespace {

/// Points to GTK's whole ones. Edges are rounded, not lengths, so that neighbours leave no gap; values that no screen
/// has are held, so that they stay within an int.
GtkAllocation wholePoints(const platform::Rectangle& rectangle) {
    const auto rounded = [](double points) {
        return std::isfinite(points) ? static_cast<int>(std::lround(std::clamp(points, -1e6, 1e6))) : 0;
    };
    const int x = rounded(rectangle.x);
    const int y = rounded(rectangle.y);
    return {x, y, std::max(rounded(rectangle.x + rectangle.width) - x, 0),
            std::max(rounded(rectangle.y + rectangle.height) - y, 0)};
}

void allocate(GtkWidget* widget, GtkAllocation allocation) {
    int minimumWidth = 0;
    int minimumHeight = 0;
    gtk_widget_measure(widget, GTK_ORIENTATION_HORIZONTAL, -1, &minimumWidth, nullptr, nullptr, nullptr);
    allocation.width = std::max(allocation.width, minimumWidth);
    gtk_widget_measure(widget, GTK_ORIENTATION_VERTICAL, allocation.width, &minimumHeight, nullptr, nullptr, nullptr);
    allocation.height = std::max(allocation.height, minimumHeight);
    gtk_widget_size_allocate(widget, &allocation, -1);
}

GtkView& gtkView(const std::shared_ptr<platform::View>& view) { return static_cast<GtkView&>(*view); }

}  // namespace

GtkView::GtkView(platform::Backdrop backdrop)
    : layer_(retain(newLayer(*this, backdrop == platform::Backdrop::dimmed))),
      alpha_(layer_.get(), 1,
             [this](double alpha) {
                 gtk_widget_set_opacity(layer_.get(), alpha);
                 gtk_widget_set_can_target(layer_.get(), alpha > 0);
                 gtk_widget_set_can_focus(layer_.get(), alpha > 0);
             }),
      offset_(layer_.get(), 0, [this](double) { layOutAgain(); }) {}

GtkView::~GtkView() {
    forgetOwner(layer_.get());
    for (const auto& child : children_) {
        gtkView(child).parent_ = nullptr;
        gtk_widget_unparent(gtkView(child).widget());
    }
    setContent(nullptr);
}

void GtkView::setAlpha(double alpha) noexcept { alpha_.moveTo(alpha, 0); }

void GtkView::fadeTo(double alpha, double seconds, std::function<void()> completion) noexcept {
    alpha_.moveTo(alpha, seconds, std::move(completion));
}

void GtkView::addChild(const std::shared_ptr<platform::View>& child) noexcept {
    auto* view = dynamic_cast<GtkView*>(child.get());
    if (view == nullptr || view == this || isBelow(*view)) return;
    const auto held = child;  // the parent that it leaves may hold the argument itself
    view->leaveParent();
    view->parent_ = this;
    children_.push_back(held);
    gtk_widget_insert_before(view->widget(), widget(), nullptr);
}

void GtkView::removeFromParent() noexcept { leaveParent(); }

std::shared_ptr<platform::View> GtkView::findTag(std::int32_t tag) noexcept {
    if (tag_ == tag) return shared_from_this();
    for (const auto& child : children_) {
        if (auto found = gtkView(child).findTag(tag)) return found;
    }
    return nullptr;
}

void GtkView::setConstraints(std::vector<platform::LayoutConstraint> constraints) noexcept {
    constraints_ = std::move(constraints);
    layOutAgain();
}

void GtkView::setVerticalOffset(double points, double seconds) noexcept { offset_.moveTo(points, seconds); }

platform::Rectangle GtkView::frame() const noexcept {
    if (parent_ == nullptr) {
        return {0, 0, static_cast<double>(gtk_widget_get_width(widget())),
                static_cast<double>(gtk_widget_get_height(widget()))};
    }
    const auto parent = parent_->frame();
    auto own = placeIn(parent.width, parent.height);
    own.x += parent.x;
    own.y += parent.y;
    return own;
}

void GtkView::setContent(GtkWidget* content, Resized resized) {
    if (content_ != nullptr) gtk_widget_unparent(content_.get());
    content_ = retain(content);
    resized_ = std::move(resized);
    if (content_ != nullptr) gtk_widget_insert_after(content_.get(), widget(), nullptr);
}

void GtkView::layOut(int width, int height) noexcept {
    if (content_ != nullptr) allocate(content_.get(), {0, 0, width, height});
    for (const auto& child : children_) {
        const auto& view = gtkView(child);
        allocate(view.widget(), wholePoints(view.placeIn(width, height)));
    }
    if (resized_) resized_(width, height);
}

platform::Rectangle GtkView::placeIn(double parentWidth, double parentHeight) const {
    const platform::Rectangle parent{0, 0, parentWidth, parentHeight};
    auto placed = solveFrame(constraints_, parent, parent);  // no desktop covers a part of a window
    placed.y += offset_.value();
    return placed;
}

bool GtkView::isBelow(const GtkView& view) const noexcept {
    for (const auto* above = parent_; above != nullptr; above = above->parent_) {
        if (above == &view) return true;
    }
    return false;
}

void GtkView::layOutAgain() noexcept {
    if (parent_ != nullptr) gtk_widget_queue_allocate(parent_->widget());
}

void GtkView::leaveParent() noexcept {
    if (parent_ == nullptr) return;
    auto& siblings = std::exchange(parent_, nullptr)->children_;
    gtk_widget_unparent(widget());
    const auto own =
        std::find_if(siblings.begin(), siblings.end(), [&](const auto& child) { return child.get() == this; });
    const auto held = std::move(*own);  // may be the last reference: released when all is done
    siblings.erase(own);
}

}  // namespace orbinel::hosts
