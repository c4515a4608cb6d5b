#pragma once

#include <gtk/gtk.h>

#include <string_view>
#include <vector>

namespace shop {

/// One area or line of a drawing, in a square of 100 by 100.
struct Stroke {
    /// "M x y", "L x y", "C x1 y1 x2 y2 x y" and "Z" as in SVG, all absolute, and "O x y rx ry" for an ellipse.
    std::string_view path;
    GdkRGBA colour;
    double lineWidth = 0;  // 0: filled
};

/// Draws in the middle of an area of this size, as large as fits.
void draw(cairo_t* context, const std::vector<Stroke>& strokes, int width, int height);

[[nodiscard]] GdkRGBA parseColour(const char* text);

/// The colour, lighter for a positive amount up to 1, darker for a negative one down to -1.
[[nodiscard]] GdkRGBA shaded(GdkRGBA colour, float amount);

}  // namespace shop
