#include "shop/widgets/icon.hpp"

#include <string_view>

#include "shop/widgets/drawing.hpp"

namespace shop {

namespace {

constexpr const char* symbolKey = "shop-symbol";
constexpr std::string_view heartPath =
    "M 50 86 C 20 64 10 50 10 34 C 10 20 20 12 31 12 C 40 12 46 17 50 25 C 54 17 60 12 69 12 C 80 12 90 20 90 34 "
    "C 90 50 80 64 50 86 Z";

std::string_view pathOf(Symbol symbol) {
    switch (symbol) {
        case Symbol::home:
            return "M 10 48 L 50 12 L 90 48 M 22 40 L 22 86 L 78 86 L 78 40 M 42 86 L 42 60 L 58 60 L 58 86";
        case Symbol::heart:
        case Symbol::fullHeart:
            return heartPath;
        case Symbol::bag:
            return "M 18 34 L 82 34 L 88 88 L 12 88 Z M 34 44 L 34 28 C 34 6 66 6 66 28 L 66 44";
        case Symbol::bell:
            return "M 14 72 L 86 72 C 74 62 76 50 76 42 C 76 24 64 14 50 14 C 36 14 24 24 24 42 C 24 50 26 62 14 72 Z "
                   "M 40 84 C 44 92 56 92 60 84 M 50 14 L 50 8";
        case Symbol::person:
            return "O 50 30 19 19 M 14 90 C 16 66 30 60 50 60 C 70 60 84 66 86 90";
        case Symbol::list:
            return "M 12 24 L 14 24 M 32 24 L 88 24 M 12 50 L 14 50 M 32 50 L 88 50 M 12 76 L 14 76 M 32 76 L 88 76";
        case Symbol::back:
            return "M 62 16 L 28 50 L 62 84";
        case Symbol::plus:
            return "M 50 18 L 50 82 M 18 50 L 82 50";
        case Symbol::minus:
            return "M 18 50 L 82 50";
        case Symbol::cross:
            return "M 22 22 L 78 78 M 78 22 L 22 78";
        case Symbol::truck:
            return "M 6 22 L 58 22 L 58 70 L 6 70 Z M 58 38 L 78 38 L 94 54 L 94 70 L 58 70 O 26 76 9 9 O 76 76 9 9";
        case Symbol::phone:
            return "M 30 8 L 70 8 L 70 92 L 30 92 Z M 44 80 L 56 80";
    }
    return {};
}

Symbol symbolOf(gpointer icon) {
    return static_cast<Symbol>(GPOINTER_TO_INT(g_object_get_data(G_OBJECT(icon), symbolKey)));
}

void drawIcon(GtkDrawingArea* area, cairo_t* context, int width, int height, gpointer /*data*/) {
    GdkRGBA colour{};
    gtk_style_context_get_color(gtk_widget_get_style_context(GTK_WIDGET(area)), &colour);
    const auto symbol = symbolOf(area);
    constexpr double line = 8;
    std::vector<Stroke> strokes{{pathOf(symbol), colour, line}};
    if (symbol == Symbol::fullHeart) strokes.push_back({pathOf(symbol), colour, 0});
    draw(context, strokes, width, height);
}

}  // namespace

GtkWidget* newIcon(Symbol symbol, int size) {
    auto* area = gtk_drawing_area_new();
    gtk_drawing_area_set_content_width(GTK_DRAWING_AREA(area), size);
    gtk_drawing_area_set_content_height(GTK_DRAWING_AREA(area), size);
    gtk_widget_set_halign(area, GTK_ALIGN_CENTER);
    gtk_widget_set_valign(area, GTK_ALIGN_CENTER);
    gtk_drawing_area_set_draw_func(GTK_DRAWING_AREA(area), &drawIcon, nullptr, nullptr);
    setSymbol(area, symbol);
    return area;
}

void setSymbol(GtkWidget* icon, Symbol symbol) {
    g_object_set_data(G_OBJECT(icon), symbolKey, GINT_TO_POINTER(static_cast<int>(symbol)));
    gtk_widget_queue_draw(icon);
}

}  // namespace shop
