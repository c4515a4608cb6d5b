#include "shop/widgets/drawing.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <sstream>
#include <string>

namespace shop {

namespace {

constexpr double side = 100;

template <std::size_t Count>
std::array<double, Count> numbers(std::istringstream& text) {
    std::array<double, Count> read{};
    for (auto& number : read) text >> number;
    return read;
}

void addEllipse(cairo_t* context, const std::array<double, 4>& ellipse) {
    const auto [x, y, horizontal, vertical] = ellipse;
    cairo_save(context);
    cairo_translate(context, x, y);
    cairo_scale(context, horizontal, vertical);
    cairo_new_sub_path(context);
    cairo_arc(context, 0, 0, 1, 0, 2 * std::numbers::pi);
    cairo_restore(context);
}

void addPath(cairo_t* context, std::string_view path) {
    std::istringstream text{std::string(path)};
    for (char command = 0; text >> command;) {
        if (command == 'M' || command == 'L') {
            const auto [x, y] = numbers<2>(text);
            command == 'M' ? cairo_move_to(context, x, y) : cairo_line_to(context, x, y);
        }
        if (command == 'C') {
            const auto [x1, y1, x2, y2, x, y] = numbers<6>(text);
            cairo_curve_to(context, x1, y1, x2, y2, x, y);
        }
        if (command == 'O') addEllipse(context, numbers<4>(text));
        if (command == 'Z') cairo_close_path(context);
    }
}

float towards(float from, float to, float part) { return from + (to - from) * part; }

}  // namespace

void draw(cairo_t* context, const std::vector<Stroke>& strokes, int width, int height) {
    const double scale = std::min(width, height) / side;
    cairo_translate(context, (width - side * scale) / 2, (height - side * scale) / 2);
    cairo_scale(context, scale, scale);
    cairo_set_line_cap(context, CAIRO_LINE_CAP_ROUND);
    cairo_set_line_join(context, CAIRO_LINE_JOIN_ROUND);
    for (const auto& stroke : strokes) {
        cairo_new_path(context);
        addPath(context, stroke.path);
        gdk_cairo_set_source_rgba(context, &stroke.colour);
        cairo_set_line_width(context, stroke.lineWidth);
        stroke.lineWidth > 0 ? cairo_stroke(context) : cairo_fill(context);
    }
}

GdkRGBA parseColour(const char* text) {
    GdkRGBA colour{0, 0, 0, 1};
    gdk_rgba_parse(&colour, text);
    return colour;
}

GdkRGBA shaded(GdkRGBA colour, float amount) {
    const float target = amount > 0 ? 1 : 0;
    const float part = std::abs(amount);
    return {towards(colour.red, target, part), towards(colour.green, target, part), towards(colour.blue, target, part),
            colour.alpha};
}

}  // namespace shop
