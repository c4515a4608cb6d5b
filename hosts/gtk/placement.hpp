#pragma once

#include <vector>

#include "orbinel/platform/layout.hpp"

namespace orbinel::hosts {

/// Where the constraints put a view, from the upper left corner of a parent of that size. No desktop covers a part of
/// a window, so the safe area is the parent.
[[nodiscard]] platform::Rectangle place(const std::vector<platform::LayoutConstraint>& constraints, double parentWidth,
                                        double parentHeight);

}  // namespace orbinel::hosts
