#pragma once

#include <cstdint>
#include <vector>

#include "orbinel/platform/layout.hpp"
#include "orbinel/value.hpp"

namespace orbinel {

/// Where on the screen a message lies: "template_layout" of its content.
class TemplateLayout {
public:
    explicit TemplateLayout(Dictionary templateLayout);

    /// The same layout with these keys replaced.
    [[nodiscard]] TemplateLayout adjusted(const Dictionary& templateLayout) const;

    /// Of the container in its parent: as wide as that, full height or docked to the top, the middle or the bottom.
    /// Inside the safe area unless the message asks for the whole screen.
    [[nodiscard]] std::vector<platform::LayoutConstraint> constraints() const;

    /// A message in the middle that leaves some of the application to be seen dims it.
    [[nodiscard]] bool dimsTheRest() const noexcept { return !isFullHeight() && dock_ == Dock::middle; }
    [[nodiscard]] bool isFullHeight() const noexcept { return height_ == 1; }
    [[nodiscard]] std::int32_t position() const noexcept { return position_; }

private:
    enum class Dock { top, middle, bottom };

    Dictionary source_;
    double height_ = 1;  // of the parent's
    std::int32_t position_ = 0;
    Dock dock_ = Dock::bottom;
    bool ignoreSafeZone_ = false;
};

}  // namespace orbinel
