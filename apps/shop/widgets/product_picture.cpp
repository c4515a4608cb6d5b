#include "shop/widgets/product_picture.hpp"

#include <vector>

#include "shop/widgets/drawing.hpp"
#include "shop/widgets/ui.hpp"

namespace shop {

namespace {

struct Colours {
    GdkRGBA body;
    GdkRGBA light;
    GdkRGBA dark;
    GdkRGBA shadow;
};

Colours coloursOf(const Product& product) {
    const auto body = parseColour(product.colour.c_str());
    return {body, shaded(body, 0.28F), shaded(body, -0.25F), GdkRGBA{0, 0, 0, 0.16F}};
}

std::vector<Stroke> mug(const Colours& c) {
    return {{"O 48 82 36 6", c.shadow},
            {"M 68 40 C 90 36 92 66 67 66", c.dark, 7},
            {"M 22 26 L 70 26 L 70 66 C 70 78 62 83 54 83 L 38 83 C 30 83 22 78 22 66 Z", c.body},
            {"M 22 26 L 70 26 L 70 44 C 62 54 56 42 46 46 C 36 50 30 56 22 46 Z", c.light},
            {"O 46 26 24 5", c.dark}};
}

std::vector<Stroke> bowl(const Colours& c) {
    return {
        {"O 50 80 32 6", c.shadow},
        {"M 38 72 L 62 72 L 64 82 L 36 82 Z", c.dark},
        {"M 12 38 L 88 38 C 88 64 72 76 50 76 C 28 76 12 64 12 38 Z", c.body},
        {"M 12 38 L 88 38 C 88 44 87 48 85 52 C 70 60 62 46 48 52 C 36 58 26 60 15 52 C 13 48 12 44 12 38 Z", c.light},
        {"O 50 38 38 7", c.dark}};
}

std::vector<Stroke> plate(const Colours& c) {
    const auto white = parseColour("#fbf8f2");
    return {{"O 52 54 40 40", c.shadow},
            {"O 50 50 40 40", c.body},
            {"O 50 50 33 33", white},
            {"O 50 50 23 23", shaded(white, -0.06F)},
            {"O 50 50 21.5 21.5", white}};
}

std::vector<Stroke> jug(const Colours& c) {
    return {{"O 48 86 28 5", c.shadow},
            {"M 66 34 C 92 28 90 68 66 66", c.dark, 6},
            {"M 24 18 L 66 18 L 64 34 C 74 48 74 70 64 86 L 34 86 C 22 70 24 50 32 34 L 16 20 Z", c.body},
            {"M 32 34 C 44 38 52 38 64 34 C 70 42 72 50 72 58 C 60 66 44 50 27 60 C 27 50 28 42 32 34 Z", c.light}};
}

std::vector<Stroke> kettle(const Colours& c) {
    return {{"O 48 84 36 6", c.shadow},
            {"M 28 34 C 30 6 70 6 70 34", c.dark, 6},
            {"M 72 58 C 84 56 84 40 94 38 L 96 46 C 90 50 90 70 74 72 Z", c.body},
            {"M 18 58 C 18 40 32 34 48 34 C 66 34 78 42 78 60 C 78 76 68 84 48 84 C 28 84 18 76 18 58 Z", c.body},
            {"M 19 52 C 22 40 34 34 48 34 C 64 34 74 40 77 52 C 60 58 40 46 19 52 Z", c.light},
            {"O 49 34 18 4", c.dark},
            {"O 49 28 5 5", c.dark}};
}

std::vector<Stroke> pot(const Colours& c) {
    return {{"O 50 82 30 6", c.shadow},
            {"M 20 44 L 80 44 C 82 70 74 82 50 82 C 26 82 18 70 20 44 Z", c.body},
            {"M 20 44 L 80 44 C 80 52 80 58 78 62 C 60 54 44 68 22 60 C 20 56 20 50 20 44 Z", c.light},
            {"M 22 42 C 24 26 76 26 78 42 Z", c.dark},
            {"O 50 26 6 6", c.body}};
}

std::vector<Stroke> lamp(const Colours& c) {
    const auto steel = parseColour("#5a534d");
    const auto glow = parseColour("#fff3c9");
    return {{"O 46 89 34 5", c.shadow},
            {"M 48 38 L 86 53 L 96 87 L 44 87 Z", GdkRGBA{glow.red, glow.green, glow.blue, 0.6F}},
            {"M 24 86 L 58 86", steel, 7},
            {"M 38 84 L 26 52 L 54 26", steel, 4},
            {"M 56 16 C 70 12 84 24 84 40 L 88 52 L 46 36 C 46 28 48 20 56 16 Z", c.body},
            {"M 56 16 C 64 14 72 18 77 24 C 68 26 58 26 50 24 C 51 20 53 18 56 16 Z", c.light},
            {"M 88 52 L 46 36 C 50 50 74 60 88 52 Z", glow}};
}

std::vector<Stroke> candle(const Colours& c) {
    const auto wax = parseColour("#fbf6ea");
    return {{"O 50 88 34 5", c.shadow},
            {"M 43 28 L 57 28 L 57 66 L 43 66 Z", wax},
            {"M 50 6 C 58 16 57 22 50 25 C 43 22 42 16 50 6 Z", parseColour("#f0a63c")},
            {"M 36 58 L 64 58 L 60 72 L 40 72 Z", c.dark},
            {"M 16 78 C 30 66 70 66 84 78 C 84 90 16 90 16 78 Z", c.body},
            {"O 50 77 33 6", c.light}};
}

std::vector<Stroke> vase(const Colours& c) {
    const auto stem = parseColour("#6f8553");
    const auto bloom = parseColour("#d9692f");
    return {
        {"O 50 92 24 4", c.shadow},
        {"M 48 34 C 46 22 36 18 32 12", stem, 2.5},
        {"M 50 34 C 52 20 60 16 66 8", stem, 2.5},
        {"O 31 11 6 6", bloom},
        {"O 67 8 5 5", parseColour("#f0c48a")},
        {"M 42 32 L 58 32 C 56 44 72 52 72 70 C 72 84 64 92 50 92 C 36 92 28 84 28 70 C 28 52 44 44 42 32 Z", c.body},
        {"M 42 32 L 58 32 C 57 40 64 46 68 54 C 56 62 48 48 34 54 C 40 46 43 40 42 32 Z", c.light}};
}

std::vector<Stroke> planter(const Colours& c) {
    const auto leaf = parseColour("#6f8553");
    const auto darkLeaf = parseColour("#55693f");
    return {{"O 50 88 32 5", c.shadow},
            {"M 50 50 C 40 36 42 18 50 6 C 58 18 60 36 50 50 Z", leaf},
            {"M 48 52 C 30 48 20 34 20 22 C 36 24 48 36 48 52 Z", darkLeaf},
            {"M 52 52 C 70 48 80 34 80 22 C 64 24 52 36 52 52 Z", darkLeaf},
            {"M 24 50 L 76 50 L 68 86 L 32 86 Z", c.body},
            {"M 20 46 L 80 46 L 80 56 L 20 56 Z", c.light}};
}

std::vector<Stroke> strokesOf(const Product& product) {
    const auto colours = coloursOf(product);
    switch (product.motif) {
        case Motif::mug:
            return mug(colours);
        case Motif::bowl:
            return bowl(colours);
        case Motif::plate:
            return plate(colours);
        case Motif::jug:
            return jug(colours);
        case Motif::kettle:
            return kettle(colours);
        case Motif::pot:
            return pot(colours);
        case Motif::lamp:
            return lamp(colours);
        case Motif::candle:
            return candle(colours);
        case Motif::vase:
            return vase(colours);
        case Motif::planter:
            return planter(colours);
    }
    return {};
}

void drawProduct(GtkDrawingArea* /*area*/, cairo_t* context, int width, int height, gpointer data) {
    const auto& product = *static_cast<const Product*>(data);
    const auto ground = parseColour(product.tint.c_str());
    gdk_cairo_set_source_rgba(context, &ground);
    cairo_paint(context);
    constexpr double margin = 0.1;  // of the height
    cairo_translate(context, 0, height * margin);
    draw(context, strokesOf(product), width, static_cast<int>(height * (1 - 2 * margin)));
}

void drawAlone(GtkDrawingArea* /*area*/, cairo_t* context, int width, int height, gpointer data) {
    draw(context, strokesOf(*static_cast<const Product*>(data)), width, height);
}

GtkWidget* newDrawingArea(const Product& product, GtkDrawingAreaDrawFunc draws, int leastWidth, int leastHeight) {
    auto* area = gtk_drawing_area_new();
    gtk_drawing_area_set_content_width(GTK_DRAWING_AREA(area), leastWidth);
    gtk_drawing_area_set_content_height(GTK_DRAWING_AREA(area), leastHeight);
    gtk_drawing_area_set_draw_func(GTK_DRAWING_AREA(area), draws, const_cast<Product*>(&product), nullptr);
    return area;
}

}  // namespace

GtkWidget* newProductPicture(const Product& product, int leastWidth, int leastHeight) {
    auto* area = newDrawingArea(product, &drawProduct, leastWidth, leastHeight);
    gtk_widget_set_overflow(area, GTK_OVERFLOW_HIDDEN);
    gtk_widget_add_css_class(area, "picture");
    return area;
}

GtkWidget* newProductDrawing(const Product& product, int size) {
    return newDrawingArea(product, &drawAlone, size, size);
}

}  // namespace shop
