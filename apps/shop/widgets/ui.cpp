#include "shop/widgets/ui.hpp"

#include <utility>

#include "shop/widgets/clamp.hpp"

namespace shop {

namespace {

void run(GClosure* closure, GValue* /*result*/, guint /*count*/, const GValue* /*arguments*/, gpointer /*hint*/,
         gpointer /*data*/) noexcept {
    (*static_cast<Action*>(closure->data))();
}

void destroy(gpointer action, GClosure* /*closure*/) noexcept { delete static_cast<Action*>(action); }

GtkWidget* withClasses(GtkWidget* widget, Classes classes) {
    for (const auto* name : classes) gtk_widget_add_css_class(widget, name);
    return widget;
}

}  // namespace

void connect(gpointer object, const char* signal, Action action) {
    auto* kept = new Action(std::move(action));
    auto* closure = g_closure_new_simple(sizeof(GClosure), kept);
    g_closure_add_finalize_notifier(closure, kept, &destroy);
    g_closure_set_marshal(closure, &run);
    g_signal_connect_closure(object, signal, closure, FALSE);
}

GtkWidget* newColumn(int spacing, Classes classes) {
    return withClasses(gtk_box_new(GTK_ORIENTATION_VERTICAL, spacing), classes);
}

GtkWidget* newRow(int spacing, Classes classes) {
    return withClasses(gtk_box_new(GTK_ORIENTATION_HORIZONTAL, spacing), classes);
}

GtkWidget* newLabel(const std::string& text, Classes classes) {
    auto* label = gtk_label_new(text.c_str());
    gtk_label_set_xalign(GTK_LABEL(label), 0);
    gtk_label_set_ellipsize(GTK_LABEL(label), PANGO_ELLIPSIZE_END);
    return withClasses(label, classes);
}

GtkWidget* newText(const std::string& text, Classes classes) {
    auto* label = gtk_label_new(text.c_str());
    gtk_label_set_xalign(GTK_LABEL(label), 0);
    gtk_label_set_wrap(GTK_LABEL(label), TRUE);
    gtk_label_set_wrap_mode(GTK_LABEL(label), PANGO_WRAP_WORD_CHAR);
    return withClasses(label, classes);
}

GtkWidget* newButton(const std::string& text, Classes classes, Action action) {
    auto* button = withClasses(gtk_button_new_with_label(text.c_str()), classes);
    connect(button, "clicked", std::move(action));
    return button;
}

GtkWidget* newButton(GtkWidget* child, const std::string& name, Classes classes, Action action) {
    auto* button = withClasses(gtk_button_new(), classes);
    gtk_button_set_child(GTK_BUTTON(button), child);
    setAccessibleName(button, name);
    connect(button, "clicked", std::move(action));
    return button;
}

GtkWidget* newScrolledPage(GtkWidget* content, int mostWidth) {
    gtk_widget_add_css_class(content, "page");
    auto* scroller = gtk_scrolled_window_new();
    gtk_scrolled_window_set_policy(GTK_SCROLLED_WINDOW(scroller), GTK_POLICY_NEVER, GTK_POLICY_AUTOMATIC);
    gtk_scrolled_window_set_child(GTK_SCROLLED_WINDOW(scroller), newClamp(content, mostWidth));
    gtk_widget_set_vexpand(scroller, TRUE);
    return scroller;
}

void append(GtkWidget* box, std::initializer_list<GtkWidget*> children) {
    for (auto* child : children) gtk_box_append(GTK_BOX(box), child);
}

void removeChildren(GtkWidget* box) {
    while (auto* child = gtk_widget_get_first_child(box)) gtk_box_remove(GTK_BOX(box), child);
}

void setText(GtkWidget* label, const std::string& text) { gtk_label_set_text(GTK_LABEL(label), text.c_str()); }

void setClass(GtkWidget* widget, const char* name, bool present) {
    present ? gtk_widget_add_css_class(widget, name) : gtk_widget_remove_css_class(widget, name);
}

void setAccessibleName(GtkWidget* widget, const std::string& name) {
    gtk_accessible_update_property(GTK_ACCESSIBLE(widget), GTK_ACCESSIBLE_PROPERTY_LABEL, name.c_str(), -1);
    gtk_widget_set_tooltip_text(widget, name.c_str());
}

GtkWidget* named(GtkWidget* widget, const std::string& name) {
    gtk_widget_set_name(widget, name.c_str());
    return widget;
}

}  // namespace shop
