#pragma once

#include <initializer_list>
#include <vector>

#include "orbinel/platform/layout.hpp"

namespace orbinel {

/// A view's place, said rather than computed:
///
///     LayoutBuilder().pin({Edge::left, Edge::right}, Guide::parent).pin({Edge::bottom}, Guide::safeArea)
///         .height(0.5, Guide::parent).constraints()
class LayoutBuilder {
public:
    using Edge = platform::LayoutAttribute;  // left, right, top or bottom
    using Guide = platform::LayoutGuide;

    /// The edges lie on those of the guide, or so many points inside it.
    LayoutBuilder& pin(std::initializer_list<Edge> edges, Guide guide, double inset = 0);

    /// The middle of the view's height lies on that of the guide.
    LayoutBuilder& centreVertically(Guide guide);

    /// So much of the guide's height.
    LayoutBuilder& height(double fraction, Guide guide);

    /// In points.
    LayoutBuilder& size(double width, double height);

    [[nodiscard]] std::vector<platform::LayoutConstraint> constraints() const { return constraints_; }

private:
    std::vector<platform::LayoutConstraint> constraints_;
};

}  // namespace orbinel
