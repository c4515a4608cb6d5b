#include "hosts/gtk/layer.hpp"

namespace orbinel::hosts {

namespace {

constexpr GdkRGBA halfBlack{0, 0, 0, 0.5F};

struct Layer {
    GtkWidget widget;
    LayerOwner* owner;
    bool dimmed;
};

GtkWidgetClass* widgetClass() { return GTK_WIDGET_CLASS(g_type_class_peek(GTK_TYPE_WIDGET)); }

Layer& layerOf(GtkWidget* widget) { return *reinterpret_cast<Layer*>(widget); }

void measure(GtkWidget* /*widget*/, GtkOrientation /*orientation*/, int /*size*/, int* minimum, int* natural,
             int* minimumBaseline, int* naturalBaseline) noexcept {
    *minimum = *natural = 0;
    *minimumBaseline = *naturalBaseline = -1;
}

void allocate(GtkWidget* widget, int width, int height, int /*baseline*/) noexcept {
    if (auto* owner = layerOf(widget).owner) owner->layOut(width, height);
}

void root(GtkWidget* widget) noexcept {
    widgetClass()->root(widget);
    if (auto* owner = layerOf(widget).owner) owner->enteredWindow();
}

void snapshot(GtkWidget* widget, GtkSnapshot* target) noexcept {
    if (layerOf(widget).dimmed) {
        const graphene_rect_t bounds{
            {0, 0},
            {static_cast<float>(gtk_widget_get_width(widget)), static_cast<float>(gtk_widget_get_height(widget))}};
        gtk_snapshot_append_color(target, &halfBlack, &bounds);
    }
    widgetClass()->snapshot(widget, target);
}

gboolean contains(GtkWidget* widget, double x, double y) noexcept {
    return layerOf(widget).dimmed && widgetClass()->contains(widget, x, y);
}

void initialiseClass(gpointer type, gpointer /*data*/) noexcept {
    auto* widget = GTK_WIDGET_CLASS(type);
    widget->measure = &measure;
    widget->size_allocate = &allocate;
    widget->root = &root;
    widget->snapshot = &snapshot;
    widget->contains = &contains;
    gtk_widget_class_set_css_name(widget, "orbinel-layer");
}

GType layerType() {
    static const GType type = g_type_register_static_simple(GTK_TYPE_WIDGET, "OrbinelLayer", sizeof(GtkWidgetClass),
                                                            &initialiseClass, sizeof(Layer), nullptr, GTypeFlags{});
    return type;
}

}  // namespace

GtkWidget* newLayer(LayerOwner* owner, bool dimmed) {
    auto* widget = GTK_WIDGET(g_object_new(layerType(), nullptr));
    layerOf(widget).owner = owner;
    layerOf(widget).dimmed = dimmed;
    return widget;
}

void forgetOwner(GtkWidget* layer) { layerOf(layer).owner = nullptr; }

}  // namespace orbinel::hosts
