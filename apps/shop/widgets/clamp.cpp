#include "shop/widgets/clamp.hpp"

#include <algorithm>

namespace shop {

namespace {

constexpr int leastWidth = 100;  // points to which it can be narrowed, whatever its child needs

// A layout manager of GTK is a class of its object system, which is written in its own way.

struct ClampLayout {
    GtkLayoutManager parent;
    int mostWidth;
};

struct ClampLayoutClass {
    GtkLayoutManagerClass parent;
};

G_DEFINE_TYPE(ClampLayout, shop_clamp_layout, GTK_TYPE_LAYOUT_MANAGER)

int mostWidthOf(GtkLayoutManager* layout) { return reinterpret_cast<ClampLayout*>(layout)->mostWidth; }

int givenWidth(GtkWidget* child, GtkLayoutManager* layout, int width) {
    int minimum = 0;
    gtk_widget_measure(child, GTK_ORIENTATION_HORIZONTAL, -1, &minimum, nullptr, nullptr, nullptr);
    return std::max(minimum, std::min(width, mostWidthOf(layout)));
}

GtkSizeRequestMode requestMode(GtkLayoutManager* /*layout*/, GtkWidget* /*widget*/) {
    return GTK_SIZE_REQUEST_HEIGHT_FOR_WIDTH;
}

void measure(GtkLayoutManager* layout, GtkWidget* widget, GtkOrientation orientation, int forSize, int* minimum,
             int* natural, int* minimumBaseline, int* naturalBaseline) {
    auto* child = gtk_widget_get_first_child(widget);
    const bool isHeight = orientation == GTK_ORIENTATION_VERTICAL;
    const int bounded = isHeight && forSize >= 0 ? givenWidth(child, layout, forSize) : forSize;
    gtk_widget_measure(child, orientation, bounded, minimum, natural, minimumBaseline, naturalBaseline);
    if (isHeight) return;
    *natural = std::max(*minimum, std::min(*natural, mostWidthOf(layout)));
    *minimum = std::min(*minimum, leastWidth);
}

void allocate(GtkLayoutManager* layout, GtkWidget* widget, int width, int height, int baseline) {
    auto* child = gtk_widget_get_first_child(widget);
    const int given = givenWidth(child, layout, width);
    const GtkAllocation place{std::max(0, (width - given) / 2), 0, given, height};
    gtk_widget_size_allocate(child, &place, baseline);
}

void shop_clamp_layout_class_init(ClampLayoutClass* type) {
    type->parent.get_request_mode = &requestMode;
    type->parent.measure = &measure;
    type->parent.allocate = &allocate;
}

void shop_clamp_layout_init(ClampLayout* layout) { layout->mostWidth = 0; }

}  // namespace

GtkWidget* newClamp(GtkWidget* child, int mostWidth) {
    auto* layout = GTK_LAYOUT_MANAGER(g_object_new(shop_clamp_layout_get_type(), nullptr));
    reinterpret_cast<ClampLayout*>(layout)->mostWidth = mostWidth;
    auto* box = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
    gtk_widget_set_layout_manager(box, layout);
    gtk_widget_set_overflow(box, GTK_OVERFLOW_HIDDEN);
    gtk_box_append(GTK_BOX(box), child);
    return box;
}

}  // namespace shop
