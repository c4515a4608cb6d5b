#include "hosts/gtk/placement.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>

namespace orbinel::hosts {

namespace {

using platform::LayoutAttribute;
using platform::LayoutConstraint;

enum class Axis { horizontal, vertical };
enum class Edge { start, end, length, centre };

struct AxisEdge {
    Axis axis;
    Edge edge;
};

struct Span {
    double start = 0;
    double length = 0;
};

AxisEdge edgeOf(LayoutAttribute attribute) {
    switch (attribute) {
        case LayoutAttribute::left:
            return {Axis::horizontal, Edge::start};
        case LayoutAttribute::right:
            return {Axis::horizontal, Edge::end};
        case LayoutAttribute::top:
            return {Axis::vertical, Edge::start};
        case LayoutAttribute::bottom:
            return {Axis::vertical, Edge::end};
        case LayoutAttribute::width:
            return {Axis::horizontal, Edge::length};
        case LayoutAttribute::height:
            return {Axis::vertical, Edge::length};
        case LayoutAttribute::centreX:
            return {Axis::horizontal, Edge::centre};
        case LayoutAttribute::centreY:
            return {Axis::vertical, Edge::centre};
    }
    return {Axis::horizontal, Edge::start};
}

double valueOf(const LayoutConstraint& constraint, double parentWidth, double parentHeight) {
    if (constraint.guide == platform::LayoutGuide::nothing) return constraint.constant;
    const auto [axis, edge] = edgeOf(constraint.anchor);
    const double length = axis == Axis::horizontal ? parentWidth : parentHeight;
    const double anchor = edge == Edge::start ? 0 : edge == Edge::centre ? length / 2 : length;
    return anchor * constraint.multiplier + constraint.constant;
}

/// The first line of each edge, in the order given; two of them determine an axis.
class AxisLines {
public:
    void add(Edge edge, double value) {
        auto& line = lines_[static_cast<std::size_t>(edge)];
        if (line || count_ == 2) return;
        line = value;
        ++count_;
    }

    [[nodiscard]] Span spanWithin(double parentLength) const {
        auto span = count_ < 2 ? incomplete(parentLength) : complete();
        span.length = std::max(span.length, 0.0);
        return span;
    }

private:
    [[nodiscard]] std::optional<double> line(Edge edge) const { return lines_[static_cast<std::size_t>(edge)]; }

    [[nodiscard]] Span incomplete(double parentLength) const {
        if (const auto start = line(Edge::start)) return {*start, parentLength};
        if (const auto end = line(Edge::end)) return {*end - parentLength, parentLength};
        if (const auto centre = line(Edge::centre)) return {*centre - parentLength / 2, parentLength};
        return {0, line(Edge::length).value_or(parentLength)};
    }

    [[nodiscard]] Span complete() const {
        const auto start = line(Edge::start);
        const auto end = line(Edge::end);
        const auto centre = line(Edge::centre);
        if (const auto length = line(Edge::length)) {
            return {start ? *start : end ? *end - *length : *centre - *length / 2, *length};
        }
        if (!centre) return {*start, *end - *start};
        const double half = start ? *centre - *start : *end - *centre;
        return {*centre - half, 2 * half};
    }

    std::array<std::optional<double>, 4> lines_;
    int count_ = 0;
};

}  // namespace

platform::Rectangle place(const std::vector<LayoutConstraint>& constraints, double parentWidth, double parentHeight) {
    AxisLines horizontal;
    AxisLines vertical;
    for (const auto& constraint : constraints) {
        const auto [axis, edge] = edgeOf(constraint.attribute);
        (axis == Axis::horizontal ? horizontal : vertical).add(edge, valueOf(constraint, parentWidth, parentHeight));
    }
    const auto across = horizontal.spanWithin(parentWidth);
    const auto down = vertical.spanWithin(parentHeight);
    return {across.start, down.start, across.length, down.length};
}

}  // namespace orbinel::hosts
