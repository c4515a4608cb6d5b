#include "inapp/layout_builder.hpp"

namespace orbinel {

using platform::LayoutAttribute;

LayoutBuilder& LayoutBuilder::pin(std::initializer_list<Edge> edges, Guide guide, double inset) {
    for (const auto edge : edges) {
        const bool inwardsIsBackwards = edge == Edge::right || edge == Edge::bottom;
        constraints_.push_back({edge, guide, edge, 1, inwardsIsBackwards ? -inset : inset});
    }
    return *this;
}

LayoutBuilder& LayoutBuilder::centreVertically(Guide guide) {
    constraints_.push_back({LayoutAttribute::centreY, guide, LayoutAttribute::centreY, 1, 0});
    return *this;
}

LayoutBuilder& LayoutBuilder::height(double fraction, Guide guide) {
    constraints_.push_back({LayoutAttribute::height, guide, LayoutAttribute::height, fraction, 0});
    return *this;
}

LayoutBuilder& LayoutBuilder::size(double width, double height) {
    constraints_.push_back({LayoutAttribute::width, Guide::nothing, LayoutAttribute::width, 1, width});
    constraints_.push_back({LayoutAttribute::height, Guide::nothing, LayoutAttribute::height, 1, height});
    return *this;
}

}  // namespace orbinel
