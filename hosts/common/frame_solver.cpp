#include "hosts/common/frame_solver.hpp"

#include <algorithm>
#include <optional>
#include <utility>

namespace orbinel::hosts {

namespace {

using platform::LayoutAttribute;
using platform::LayoutConstraint;
using platform::LayoutGuide;
using platform::Rectangle;

/// What an attribute says of one axis.
enum class Part { near, far, size, centre };

struct Axis {
    LayoutAttribute near, far, size, centre;

    [[nodiscard]] std::optional<Part> partOf(LayoutAttribute attribute) const {
        if (attribute == near) return Part::near;
        if (attribute == far) return Part::far;
        if (attribute == size) return Part::size;
        if (attribute == centre) return Part::centre;
        return std::nullopt;
    }
};

constexpr Axis horizontal{LayoutAttribute::left, LayoutAttribute::right, LayoutAttribute::width,
                          LayoutAttribute::centreX};
constexpr Axis vertical{LayoutAttribute::top, LayoutAttribute::bottom, LayoutAttribute::height,
                        LayoutAttribute::centreY};

struct Span {
    double position = 0;
    double size = 0;

    [[nodiscard]] double at(Part part) const {
        switch (part) {
            case Part::near:
                return position;
            case Part::far:
                return position + size;
            case Part::size:
                return size;
            case Part::centre:
                return position + size / 2;
        }
        return 0;
    }
};

struct Known {
    Part part;
    double value;
};

/// The span of which two different parts are known.
Span spanOf(Known a, Known b) {
    if (b.part < a.part) std::swap(a, b);
    if (a.part == Part::near && b.part == Part::far) return {a.value, b.value - a.value};
    if (a.part == Part::near && b.part == Part::size) return {a.value, b.value};
    if (a.part == Part::near) return {a.value, 2 * (b.value - a.value)};
    if (a.part == Part::far && b.part == Part::size) return {a.value - b.value, b.value};
    if (a.part == Part::far) return {2 * b.value - a.value, 2 * (a.value - b.value)};
    return {b.value - a.value / 2, a.value};
}

/// A rectangle as its parent sees it.
Rectangle within(const Rectangle& parent, const Rectangle& inner) {
    const auto left = std::max(parent.x, inner.x);
    const auto top = std::max(parent.y, inner.y);
    const auto right = std::min(parent.x + parent.width, inner.x + inner.width);
    const auto bottom = std::min(parent.y + parent.height, inner.y + inner.height);
    return {left - parent.x, top - parent.y, std::max(right - left, 0.0), std::max(bottom - top, 0.0)};
}

const Axis& axisOf(LayoutAttribute attribute) { return horizontal.partOf(attribute) ? horizontal : vertical; }

/// Half of what an axis has to be told, as the guide has it.
LayoutConstraint asTheGuideHasIt(LayoutAttribute attribute, LayoutGuide guide) {
    return {attribute, guide == LayoutGuide::nothing ? LayoutGuide::parent : guide, attribute, 1, 0};
}

std::array<LayoutConstraint, 2> inForce(const std::vector<LayoutConstraint>& constraints, const Axis& axis) {
    const LayoutConstraint* first = nullptr;
    for (const auto& constraint : constraints) {
        if (!axis.partOf(constraint.attribute)) continue;
        if (first == nullptr) {
            first = &constraint;
        } else if (first->attribute != constraint.attribute) {
            return {*first, constraint};
        }
    }
    if (first == nullptr) {
        return {asTheGuideHasIt(axis.near, LayoutGuide::parent), asTheGuideHasIt(axis.size, LayoutGuide::parent)};
    }
    return {*first, asTheGuideHasIt(first->attribute == axis.size ? axis.near : axis.size, first->guide)};
}

class Solver {
public:
    Solver(const Rectangle& parent, const Rectangle& safeArea)
        : parent_{0, 0, parent.width, parent.height}, safeArea_(within(parent, safeArea)) {}

    [[nodiscard]] Span solve(const LayoutConstraint& first, const LayoutConstraint& second) const {
        return spanOf(known(first), known(second));
    }

private:
    [[nodiscard]] Span guideSpan(LayoutGuide guide, const Axis& axis) const {
        const auto& frame = guide == LayoutGuide::safeArea ? safeArea_ : parent_;
        return axis.near == LayoutAttribute::left ? Span{frame.x, frame.width} : Span{frame.y, frame.height};
    }

    [[nodiscard]] Known known(const LayoutConstraint& constraint) const {
        const auto part = *axisOf(constraint.attribute).partOf(constraint.attribute);
        if (constraint.guide == LayoutGuide::nothing) return {part, constraint.constant};
        const auto& axis = axisOf(constraint.anchor);
        const auto anchor = guideSpan(constraint.guide, axis).at(*axis.partOf(constraint.anchor));
        return {part, anchor * constraint.multiplier + constraint.constant};
    }

    const Rectangle parent_;  // in its own points
    const Rectangle safeArea_;
};

}  // namespace

std::array<LayoutConstraint, 4> constraintsInForce(const std::vector<LayoutConstraint>& constraints) {
    const auto [left, width] = inForce(constraints, horizontal);
    const auto [top, height] = inForce(constraints, vertical);
    return {left, width, top, height};
}

Rectangle solveFrame(const std::vector<LayoutConstraint>& constraints, const Rectangle& parent,
                     const Rectangle& safeArea) {
    const auto four = constraintsInForce(constraints);
    const Solver solver(parent, safeArea);
    const auto x = solver.solve(four[0], four[1]);
    const auto y = solver.solve(four[2], four[3]);
    return {parent.x + x.position, parent.y + y.position, std::max(x.size, 0.0), std::max(y.size, 0.0)};
}

}  // namespace orbinel::hosts
