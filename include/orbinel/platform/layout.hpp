#pragma once

namespace orbinel::platform {

/// In points.
struct Rectangle {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    friend bool operator==(const Rectangle&, const Rectangle&) = default;
};

enum class LayoutAttribute { left, right, top, bottom, width, height, centreX, centreY };

/// What a view is placed by.
enum class LayoutGuide {
    nothing,   // the constant alone
    parent,    // the parent's frame
    safeArea,  // the part of the parent's frame that no notch, status bar or home indicator covers
};

/// One line of a view's place: `attribute = anchor of the guide × multiplier + constant`. Positions count from the
/// parent's upper left corner, to the right and down.
///
/// A host gives each axis its position and size from at most two constraints of that axis; where there are none or
/// only one, what is missing is the guide's. Constraints that contradict each other give way in the order in which
/// they were given, the last first.
struct LayoutConstraint {
    LayoutAttribute attribute = LayoutAttribute::left;
    LayoutGuide guide = LayoutGuide::parent;
    LayoutAttribute anchor = LayoutAttribute::left;
    double multiplier = 1;
    double constant = 0;  // points

    friend bool operator==(const LayoutConstraint&, const LayoutConstraint&) = default;
};

}  // namespace orbinel::platform
