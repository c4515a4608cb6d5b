#pragma once

#include <array>
#include <vector>

#include "orbinel/platform/layout.hpp"

namespace orbinel::hosts {

/// What the constraints come to: for each axis the two that are in force, given or filled in from the guide, the
/// horizontal ones first.
[[nodiscard]] std::array<platform::LayoutConstraint, 4> constraintsInForce(
    const std::vector<platform::LayoutConstraint>& constraints);

/// Where a view is, given where its parent and the safe area of the window are; all in the window's points.
[[nodiscard]] platform::Rectangle solveFrame(const std::vector<platform::LayoutConstraint>& constraints,
                                             const platform::Rectangle& parent, const platform::Rectangle& safeArea);

}  // namespace orbinel::hosts
