#pragma once

#include <vector>

#include "orbinel/platform/layout.hpp"

namespace orbinel::hosts {

/// Where a view is, given where its parent and the safe area of the window are; all in the window's points.
[[nodiscard]] platform::Rectangle solveFrame(const std::vector<platform::LayoutConstraint>& constraints,
                                             const platform::Rectangle& parent, const platform::Rectangle& safeArea);

}  // namespace orbinel::hosts
