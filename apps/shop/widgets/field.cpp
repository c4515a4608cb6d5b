#include "shop/widgets/field.hpp"

#include "shop/widgets/ui.hpp"

namespace shop {

Field::Field(const std::string& label, const std::string& name, GtkInputPurpose purpose)
    : box_(newColumn(6)), entry_(gtk_entry_new()), problem_(newText("", {"problem"})) {
    auto* caption = newLabel(label, {"caption"});
    gtk_entry_set_input_purpose(GTK_ENTRY(entry_), purpose);
    gtk_entry_set_max_length(GTK_ENTRY(entry_), 200);
    gtk_editable_set_width_chars(GTK_EDITABLE(entry_), 8);
    gtk_accessible_update_relation(GTK_ACCESSIBLE(entry_), GTK_ACCESSIBLE_RELATION_LABELLED_BY, caption, nullptr, -1);
    gtk_widget_set_visible(problem_, FALSE);
    append(box_, {caption, named(entry_, name), problem_});
    connect(entry_, "changed", [this] { complain(""); });
}

std::string Field::text() const {
    const std::unique_ptr<char, decltype(&g_free)> text(g_strdup(gtk_editable_get_text(GTK_EDITABLE(entry_))), &g_free);
    return g_strstrip(text.get());
}

void Field::setText(const std::string& text) { gtk_editable_set_text(GTK_EDITABLE(entry_), text.c_str()); }

void Field::complain(const std::string& sentence) {
    shop::setText(problem_, sentence);
    gtk_widget_set_visible(problem_, !sentence.empty());
    setClass(entry_, "wrong", !sentence.empty());
    gtk_accessible_update_state(GTK_ACCESSIBLE(entry_), GTK_ACCESSIBLE_STATE_INVALID,
                                sentence.empty() ? GTK_ACCESSIBLE_INVALID_FALSE : GTK_ACCESSIBLE_INVALID_TRUE, -1);
}

}  // namespace shop
