#include "hosts/gtk/gtk_view.hpp"

#include <algorithm>
#include <cmath>
#include <utility>

#include "hosts/common/frame_solver.hpp"

namespace orbinel::hosts {

namespace {

using platform::LayoutAttribute;
using platform::LayoutConstraint;

GtkConstraintAttribute gtkAttribute(LayoutAttribute attribute) {
    switch (attribute) {
        case LayoutAttribute::left:
            return GTK_CONSTRAINT_ATTRIBUTE_LEFT;
        case LayoutAttribute::right:
            return GTK_CONSTRAINT_ATTRIBUTE_RIGHT;
        case LayoutAttribute::top:
            return GTK_CONSTRAINT_ATTRIBUTE_TOP;
        case LayoutAttribute::bottom:
            return GTK_CONSTRAINT_ATTRIBUTE_BOTTOM;
        case LayoutAttribute::width:
            return GTK_CONSTRAINT_ATTRIBUTE_WIDTH;
        case LayoutAttribute::height:
            return GTK_CONSTRAINT_ATTRIBUTE_HEIGHT;
        case LayoutAttribute::centreX:
            return GTK_CONSTRAINT_ATTRIBUTE_CENTER_X;
        case LayoutAttribute::centreY:
            return GTK_CONSTRAINT_ATTRIBUTE_CENTER_Y;
    }
    return GTK_CONSTRAINT_ATTRIBUTE_NONE;
}

bool isVerticalPosition(LayoutAttribute attribute) {
    return attribute == LayoutAttribute::top || attribute == LayoutAttribute::bottom ||
           attribute == LayoutAttribute::centreY;
}

/// Values that no screen has are held: a page may have asked for them.
double onAnyScreen(double points) { return std::isfinite(points) ? std::clamp(points, -1e6, 1e6) : 0; }

/// The constraint as GTK has it, of a widget and its parent. Required, which it can be because layers have no size of
/// their own; weaker ones do not stand up to the solver's own stays.
GtkConstraint* gtkConstraint(GtkWidget* widget, const LayoutConstraint& constraint, double offset) {
    const bool free = constraint.guide == platform::LayoutGuide::nothing;
    const double moved = constraint.constant + (isVerticalPosition(constraint.attribute) ? offset : 0);
    return gtk_constraint_new(widget, gtkAttribute(constraint.attribute), GTK_CONSTRAINT_RELATION_EQ, nullptr,
                              free ? GTK_CONSTRAINT_ATTRIBUTE_NONE : gtkAttribute(constraint.anchor),
                              onAnyScreen(constraint.multiplier), onAnyScreen(moved), GTK_CONSTRAINT_STRENGTH_REQUIRED);
}

/// Fills a layer of this size, which may be smaller than what is in it can be.
void fill(GtkWidget* widget, int width, int height) {
    int minimumWidth = 0;
    int minimumHeight = 0;
    gtk_widget_measure(widget, GTK_ORIENTATION_HORIZONTAL, -1, &minimumWidth, nullptr, nullptr, nullptr);
    width = std::max(width, minimumWidth);
    gtk_widget_measure(widget, GTK_ORIENTATION_VERTICAL, width, &minimumHeight, nullptr, nullptr, nullptr);
    gtk_widget_allocate(widget, width, std::max(height, minimumHeight), -1, nullptr);
}

GtkView& gtkView(const std::shared_ptr<platform::View>& view) { return static_cast<GtkView&>(*view); }

}  // namespace

GtkView::GtkView(platform::Backdrop backdrop)
    : layer_(retain(newLayer(this, backdrop == platform::Backdrop::dimmed))),
      board_(retain(newLayer(nullptr, false))),
      alpha_(layer_.get(), 1,
             [this](double alpha) {
                 gtk_widget_set_opacity(layer_.get(), alpha);
                 gtk_widget_set_can_target(layer_.get(), alpha > 0);
                 gtk_widget_set_can_focus(layer_.get(), alpha > 0);
             }),
      offset_(layer_.get(), 0, [this](double) { arrangeInParent(); }) {
    gtk_widget_set_parent(board_.get(), layer_.get());
}

GtkView::~GtkView() {
    forgetOwner(layer_.get());
    gtk_widget_set_layout_manager(board_.get(), nullptr);
    for (const auto& child : children_) {
        gtkView(child).parent_ = nullptr;
        gtk_widget_unparent(gtkView(child).widget());
    }
    gtk_widget_unparent(board_.get());
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
    gtk_widget_insert_before(view->widget(), board_.get(), nullptr);
    arrange();
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
    arrangeInParent();
}

void GtkView::setVerticalOffset(double points, double seconds) noexcept { offset_.moveTo(points, seconds); }

platform::Rectangle GtkView::frame() const noexcept {
    if (parent_ == nullptr) {
        return {0, 0, static_cast<double>(gtk_widget_get_width(widget())),
                static_cast<double>(gtk_widget_get_height(widget()))};
    }
    const auto parent = parent_->frame();
    auto own = solveFrame(constraints_, parent, parent);  // no desktop covers a part of a window
    own.y += offset_.value();
    return own;
}

void GtkView::setContent(GtkWidget* content, Resized resized) {
    if (content_ != nullptr) gtk_widget_unparent(content_.get());
    content_ = retain(content);
    resized_ = std::move(resized);
    if (content_ != nullptr) gtk_widget_insert_after(content_.get(), widget(), nullptr);
}

void GtkView::layOut(int width, int height) noexcept {
    if (content_ != nullptr) fill(content_.get(), width, height);
    fill(board_.get(), width, height);
    if (resized_) resized_(width, height);
}

/// A new layout manager each time: GTK's cannot be taken along when its widget leaves a window and comes back, and no
/// constraint can be removed from it meanwhile.
void GtkView::arrange() noexcept {
    if (gtk_widget_get_root(widget()) == nullptr) return;
    auto* layout = gtk_constraint_layout_new();
    for (const auto& child : children_) {
        const auto& view = gtkView(child);
        for (const auto& constraint : constraintsInForce(view.constraints_)) {
            gtk_constraint_layout_add_constraint(GTK_CONSTRAINT_LAYOUT(layout),
                                                 gtkConstraint(view.widget(), constraint, view.offset_.value()));
        }
    }
    gtk_widget_set_layout_manager(board_.get(), layout);
}

bool GtkView::isBelow(const GtkView& view) const noexcept {
    for (const auto* above = parent_; above != nullptr; above = above->parent_) {
        if (above == &view) return true;
    }
    return false;
}

void GtkView::arrangeInParent() noexcept {
    if (parent_ != nullptr) parent_->arrange();
}

void GtkView::leaveParent() noexcept {
    if (parent_ == nullptr) return;
    auto* const parent = std::exchange(parent_, nullptr);
    auto& siblings = parent->children_;
    gtk_widget_set_layout_manager(parent->board_.get(), nullptr);  // its constraints name this widget
    gtk_widget_unparent(widget());
    const auto own =
        std::find_if(siblings.begin(), siblings.end(), [&](const auto& child) { return child.get() == this; });
    const auto held = std::move(*own);  // may be the last reference: released when all is done
    siblings.erase(own);
    parent->arrange();
}

}  // namespace orbinel::hosts
