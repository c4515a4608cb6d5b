#pragma once

#include <gtk/gtk.h>

#include <string>

namespace shop {

/// A text field under its name, with a place for what is wrong with it.
class Field {
public:
    Field(const std::string& label, const std::string& name, GtkInputPurpose purpose = GTK_INPUT_PURPOSE_FREE_FORM);

    [[nodiscard]] GtkWidget* widget() const { return box_; }

    /// Without blanks around it.
    [[nodiscard]] std::string text() const;
    void setText(const std::string& text);

    /// An empty sentence: nothing is wrong.
    void complain(const std::string& sentence);
    void focus() { gtk_widget_grab_focus(entry_); }

private:
    GtkWidget* const box_;
    GtkWidget* const entry_;
    GtkWidget* const problem_;
};

}  // namespace shop
