#include "shop/check_box.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "shop/widgets/drawing.hpp"

namespace shop {

namespace {

constexpr int boxSize = 26;            // points
constexpr double duration = 0.32;      // seconds from empty to ticked
constexpr double fillPart = 0.55;      // of it until the box is full
constexpr double tickBeginsAt = 0.35;  // of it; the tick follows the filling

/// A widget of GTK is a class of its object system, which is written in its own way.
struct CheckBox {
    GtkWidget parent;
    GtkWidget* area;
    GtkWidget* label;
    bool checked;
    double progress;   // from 0, empty, to 1, ticked
    gint64 lastFrame;  // microseconds of the frame clock; 0 before the first frame
    guint tick;        // of the frame clock; 0 while nothing moves
};

struct CheckBoxClass {
    GtkWidgetClass parent;
};

G_DEFINE_TYPE(CheckBox, shop_check_box, GTK_TYPE_WIDGET)

guint toggledSignal = 0;

CheckBox* checkBoxOf(gpointer widget) {
    return G_TYPE_CHECK_INSTANCE_CAST(widget, shop_check_box_get_type(), CheckBox);
}

/// Where within one part of the movement it is, from 0 to 1, slowing down towards the end.
double eased(double progress, double from, double to) {
    const double part = std::clamp((progress - from) / (to - from), 0.0, 1.0);
    return 1 - std::pow(1 - part, 3);
}

void addRoundedSquare(cairo_t* context, double centre, double side, double radius) {
    const double from = centre - side / 2;
    const double to = centre + side / 2;
    cairo_new_sub_path(context);
    cairo_arc(context, to - radius, from + radius, radius, -G_PI_2, 0);
    cairo_arc(context, to - radius, to - radius, radius, 0, G_PI_2);
    cairo_arc(context, from + radius, to - radius, radius, G_PI_2, G_PI);
    cairo_arc(context, from + radius, from + radius, radius, G_PI, 3 * G_PI_2);
    cairo_close_path(context);
}

void drawFrame(cairo_t* context, const GdkRGBA& colour) {
    constexpr double line = 2;
    addRoundedSquare(context, boxSize / 2.0, boxSize - line, 7);
    gdk_cairo_set_source_rgba(context, &colour);
    cairo_set_line_width(context, line);
    cairo_stroke(context);
}

void drawFilling(cairo_t* context, const GdkRGBA& colour, double part) {
    const double side = boxSize * part;
    addRoundedSquare(context, boxSize / 2.0, side, std::min(8.0, side / 2));
    gdk_cairo_set_source_rgba(context, &colour);
    cairo_fill(context);
}

/// The tick's first strokes, so long as `part` of the whole.
void drawTick(cairo_t* context, const GdkRGBA& colour, double part) {
    struct Point {
        double x, y;
    };
    constexpr std::array<Point, 3> corners{{{7, 13.5}, {11.5, 18}, {19.5, 8.5}}};
    const double first = std::hypot(corners[1].x - corners[0].x, corners[1].y - corners[0].y);
    const double second = std::hypot(corners[2].x - corners[1].x, corners[2].y - corners[1].y);
    const double length = first + second;
    const std::array<double, 2> dashes{length * part, length + 1};
    cairo_move_to(context, corners[0].x, corners[0].y);
    cairo_line_to(context, corners[1].x, corners[1].y);
    cairo_line_to(context, corners[2].x, corners[2].y);
    cairo_set_dash(context, dashes.data(), static_cast<int>(dashes.size()), 0);
    cairo_set_line_width(context, 3);
    cairo_set_line_cap(context, CAIRO_LINE_CAP_BUTT);
    cairo_set_line_join(context, CAIRO_LINE_JOIN_ROUND);
    gdk_cairo_set_source_rgba(context, &colour);
    cairo_stroke(context);
}

GdkRGBA namedColour(GtkWidget* widget, const char* name, GdkRGBA otherwise) {
    GdkRGBA colour{};
    const bool known = gtk_style_context_lookup_color(gtk_widget_get_style_context(widget), name, &colour) != FALSE;
    return known ? colour : otherwise;
}

void drawBox(GtkDrawingArea* area, cairo_t* context, int width, int height, gpointer data) {
    const auto& box = *static_cast<CheckBox*>(data);
    auto* widget = GTK_WIDGET(area);
    cairo_translate(context, (width - boxSize) / 2.0, (height - boxSize) / 2.0);
    drawFrame(context, namedColour(widget, "shop_line", {0.5F, 0.5F, 0.5F, 1}));
    if (box.progress <= 0) return;
    drawFilling(context, namedColour(widget, "shop_accent", {0, 0, 0, 1}), eased(box.progress, 0, fillPart));
    const double tick = eased(box.progress, tickBeginsAt, 1);
    if (tick > 0) drawTick(context, namedColour(widget, "shop_on_accent", {1, 1, 1, 1}), tick);
}

bool mayMove(GtkWidget* widget) {
    gboolean enabled = TRUE;
    g_object_get(gtk_widget_get_settings(widget), "gtk-enable-animations", &enabled, nullptr);
    return enabled != FALSE && gtk_widget_get_mapped(widget) != FALSE;
}

/// One frame: a step towards the state, whichever way; a press in the middle of the movement turns it round.
gboolean step(GtkWidget* widget, GdkFrameClock* clock, gpointer /*data*/) {
    auto& box = *checkBoxOf(widget);
    const auto now = gdk_frame_clock_get_frame_time(clock);
    const double seconds = box.lastFrame == 0 ? 0 : static_cast<double>(now - box.lastFrame) / G_USEC_PER_SEC;
    box.lastFrame = now;
    const double distance = seconds / duration;
    box.progress = std::clamp(box.progress + (box.checked ? distance : -distance), 0.0, 1.0);
    gtk_widget_queue_draw(box.area);
    if (box.progress != (box.checked ? 1 : 0)) return G_SOURCE_CONTINUE;
    box.tick = 0;
    return G_SOURCE_REMOVE;
}

void move(CheckBox& box) {
    auto* widget = GTK_WIDGET(&box);
    if (!mayMove(widget)) {
        box.progress = box.checked ? 1 : 0;
        gtk_widget_queue_draw(box.area);
        return;
    }
    if (box.tick != 0) return;
    box.lastFrame = 0;
    box.tick = gtk_widget_add_tick_callback(widget, &step, nullptr, nullptr);
}

void tellAssistiveTechnology(CheckBox& box) {
    gtk_accessible_update_state(GTK_ACCESSIBLE(&box), GTK_ACCESSIBLE_STATE_CHECKED,
                                box.checked ? GTK_ACCESSIBLE_TRISTATE_TRUE : GTK_ACCESSIBLE_TRISTATE_FALSE, -1);
}

void toggle(CheckBox& box) {
    box.checked = !box.checked;
    setClass(GTK_WIDGET(&box), "checked", box.checked);
    tellAssistiveTechnology(box);
    move(box);
    g_signal_emit(&box, toggledSignal, 0);
}

void pressed(GtkWidget* widget) { toggle(*checkBoxOf(widget)); }

void released(GtkGestureClick* gesture, int /*presses*/, double x, double y, gpointer /*data*/) {
    auto* widget = gtk_event_controller_get_widget(GTK_EVENT_CONTROLLER(gesture));
    if (gtk_widget_contains(widget, x, y) == FALSE) return;  // the pointer was drawn away
    gtk_widget_grab_focus(widget);
    pressed(widget);
}

void dispose(GObject* object) {
    auto& box = *checkBoxOf(object);
    if (box.tick != 0) gtk_widget_remove_tick_callback(GTK_WIDGET(object), std::exchange(box.tick, 0));
    g_clear_pointer(&box.area, gtk_widget_unparent);
    g_clear_pointer(&box.label, gtk_widget_unparent);
    G_OBJECT_CLASS(shop_check_box_parent_class)->dispose(object);
}

/// `gtk_widget_activate` and the keys both press.
void shop_check_box_class_init(CheckBoxClass* type) {
    auto* widget = GTK_WIDGET_CLASS(type);
    G_OBJECT_CLASS(type)->dispose = &dispose;
    gtk_widget_class_set_layout_manager_type(widget, GTK_TYPE_BOX_LAYOUT);
    gtk_widget_class_set_css_name(widget, "checkbox");
    gtk_widget_class_set_accessible_role(widget, GTK_ACCESSIBLE_ROLE_CHECKBOX);
    toggledSignal = g_signal_new("toggled", G_TYPE_FROM_CLASS(type), G_SIGNAL_RUN_LAST, 0, nullptr, nullptr, nullptr,
                                 G_TYPE_NONE, 0);
    const auto activate = g_signal_new_class_handler("activate", G_TYPE_FROM_CLASS(type),
                                                     GSignalFlags(G_SIGNAL_RUN_FIRST | G_SIGNAL_ACTION),
                                                     G_CALLBACK(&pressed), nullptr, nullptr, nullptr, G_TYPE_NONE, 0);
    gtk_widget_class_set_activate_signal(widget, activate);
    for (const auto key : {GDK_KEY_space, GDK_KEY_KP_Space, GDK_KEY_Return, GDK_KEY_ISO_Enter, GDK_KEY_KP_Enter}) {
        gtk_widget_class_add_binding_signal(widget, static_cast<guint>(key), GdkModifierType{}, "activate", nullptr);
    }
}

void shop_check_box_init(CheckBox* box) {
    auto* widget = GTK_WIDGET(box);
    gtk_widget_set_focusable(widget, TRUE);
    gtk_widget_add_css_class(widget, "shop-check-box");
    gtk_box_layout_set_spacing(GTK_BOX_LAYOUT(gtk_widget_get_layout_manager(widget)), 12);
    box->area = gtk_drawing_area_new();
    gtk_drawing_area_set_content_width(GTK_DRAWING_AREA(box->area), boxSize);
    gtk_drawing_area_set_content_height(GTK_DRAWING_AREA(box->area), boxSize);
    gtk_drawing_area_set_draw_func(GTK_DRAWING_AREA(box->area), &drawBox, box, nullptr);
    gtk_widget_set_parent(box->area, widget);
    box->label = newText("");
    gtk_label_set_max_width_chars(GTK_LABEL(box->label), 30);  // by itself; it takes what room there is
    gtk_widget_set_hexpand(box->label, TRUE);
    gtk_widget_set_parent(box->label, widget);
    auto* click = gtk_gesture_click_new();
    g_signal_connect(click, "released", G_CALLBACK(&released), nullptr);
    gtk_widget_add_controller(widget, GTK_EVENT_CONTROLLER(click));
    tellAssistiveTechnology(*box);
}

}  // namespace

GtkWidget* newCheckBox(const std::string& text) {
    auto* widget = GTK_WIDGET(g_object_new(shop_check_box_get_type(), nullptr));
    setText(checkBoxOf(widget)->label, text);
    gtk_accessible_update_property(GTK_ACCESSIBLE(widget), GTK_ACCESSIBLE_PROPERTY_LABEL, text.c_str(), -1);
    return widget;
}

bool isChecked(GtkWidget* checkBox) { return checkBoxOf(checkBox)->checked; }

void setChecked(GtkWidget* checkBox, bool checked) {
    auto& box = *checkBoxOf(checkBox);
    if (box.checked != checked) toggle(box);
}

void onToggled(GtkWidget* checkBox, Action action) { connect(checkBox, "toggled", std::move(action)); }

}  // namespace shop
