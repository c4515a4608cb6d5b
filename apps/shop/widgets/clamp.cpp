#include "shop/widgets/clamp.hpp"

#include <algorithm>

namespace shop {

namespace {

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

GtkSizeRequestMode requestMode(GtkLayoutManager* /*layout*/, GtkWidget* /*widget*/) {
    return GTK_SIZE_REQUEST_HEIGHT_FOR_WIDTH;
}

void measure(GtkLayoutManager* layout, GtkWidget* widget, GtkOrientation orientation, int forSize, int* minimum,
             int* natural, int* minimumBaseline, int* naturalBaseline) {
    auto* child = gtk_widget_get_first_child(widget);
    const bool isHeight = orientation == GTK_ORIENTATION_VERTICAL;
    const int bounded = isHeight && forSize >= 0 ? std::min(forSize, mostWidthOf(layout)) : forSize;
    gtk_widget_measure(child, orientation, bounded, minimum, natural, minimumBaseline, naturalBaseline);
    if (!isHeight) *natural = std::max(*minimum, std::min(*natural, mostWidthOf(layout)));
}

void allocate(GtkLayoutManager* layout, GtkWidget* widget, int width, int height, int baseline) {
    auto* child = gtk_widget_get_first_child(widget);
    int minimum = 0;
    gtk_widget_measure(child, GTK_ORIENTATION_HORIZONTAL, -1, &minimum, nullptr, nullptr, nullptr);
    const int given = std::max(minimum, std::min(width, mostWidthOf(layout)));
    const GtkAllocation place{(width - given) / 2, 0, given, height};
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
    gtk_box_append(GTK_BOX(box), child);
    return box;
}

}  // namespace shop
