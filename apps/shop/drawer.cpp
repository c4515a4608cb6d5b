#include "shop/drawer.hpp"

#include <utility>

#include "shop/widgets/icon.hpp"

namespace shop {

namespace {

constexpr int mostRows = 200;
constexpr int mostLines = 4;  // of one row
constexpr int narrow = 30;    // characters that a text asks for; it takes what room there is

const char* nameOf(Activity::Kind kind) {
    switch (kind) {
        case Activity::Kind::call:
            return "shop calls";
        case Activity::Kind::callback:
            return "callback";
        case Activity::Kind::identity:
            return "ID listener";
        case Activity::Kind::console:
            return "console";
    }
    return "";
}

GtkWidget* newActivity(const Activity& activity) {
    auto* kind = newLabel(nameOf(activity.kind), {"kind"});
    setClass(kind, activity.kind == Activity::Kind::call ? "call" : "answer", true);
    gtk_widget_set_hexpand(kind, TRUE);
    auto* head = newRow(8);
    append(head, {kind, gtk_label_new(activity.time.c_str())});
    gtk_widget_add_css_class(gtk_widget_get_last_child(head), "time");
    auto* text = newText(activity.text, {"activity-text"});
    gtk_label_set_max_width_chars(GTK_LABEL(text), narrow);
    gtk_label_set_lines(GTK_LABEL(text), mostLines);
    gtk_label_set_ellipsize(GTK_LABEL(text), PANGO_ELLIPSIZE_END);
    gtk_widget_set_tooltip_text(text, activity.text.c_str());
    auto* row = newColumn(2, {"activity"});
    append(row, {head, text});
    return row;
}

}  // namespace

Drawer::Drawer(std::shared_ptr<ActivityLog> log, Action close)
    : log_(std::move(log)),
      box_(newColumn(0, {"drawer"})),
      hint_(newText("This window is wider than high. Messages are for upright windows: make it narrower or higher, "
                    "or press the telephone above.",
                    {"hint"})),
      list_(newColumn(0)) {
    gtk_label_set_max_width_chars(GTK_LABEL(hint_), narrow);
    auto* title = newText("What the library does", {"heading"});
    gtk_widget_set_hexpand(title, TRUE);
    auto* head = newRow(8, {"drawer-head"});
    append(head, {title, newButton(newIcon(Symbol::cross, 16), "Close the drawer", {"round"}, std::move(close))});
    auto* scroller = gtk_scrolled_window_new();
    gtk_scrolled_window_set_policy(GTK_SCROLLED_WINDOW(scroller), GTK_POLICY_NEVER, GTK_POLICY_AUTOMATIC);
    gtk_scrolled_window_set_child(GTK_SCROLLED_WINDOW(scroller), list_);
    gtk_widget_set_vexpand(scroller, TRUE);
    append(box_, {head, hint_, scroller});
    log_->setFollower([this](const Activity& activity) { add(activity); });
}

Drawer::~Drawer() { log_->setFollower({}); }

void Drawer::setUpright(bool upright) { gtk_widget_set_visible(hint_, !upright); }

void Drawer::add(const Activity& activity) {
    gtk_box_prepend(GTK_BOX(list_), newActivity(activity));
    if (++rows_ <= mostRows) return;
    gtk_box_remove(GTK_BOX(list_), gtk_widget_get_last_child(list_));
    --rows_;
}

}  // namespace shop
