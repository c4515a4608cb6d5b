#pragma once

#include <gtk/gtk.h>

#include <functional>
#include <initializer_list>
#include <memory>
#include <string>

/// The few words in which the pages are written.
namespace shop {

struct ObjectUnref {
    void operator()(gpointer object) const noexcept { g_object_unref(object); }
};

/// A reference to a GObject.
template <typename T>
using ObjectPointer = std::unique_ptr<T, ObjectUnref>;

/// Takes a further reference, or takes over a floating one; not null.
template <typename T>
[[nodiscard]] ObjectPointer<T> retain(T* object) {
    return ObjectPointer<T>(static_cast<T*>(g_object_ref_sink(object)));
}

using Action = std::function<void()>;
using Classes = std::initializer_list<const char*>;

/// Calls the action at each emission of a signal, whatever its arguments, for as long as the object lives.
void connect(gpointer object, const char* signal, Action action);

/// Widgets belong to the container that they are put into. `classes` are CSS classes.
GtkWidget* newColumn(int spacing, Classes classes = {});
GtkWidget* newRow(int spacing, Classes classes = {});
GtkWidget* newLabel(const std::string& text, Classes classes = {});  // one line, cut with an ellipsis
GtkWidget* newText(const std::string& text, Classes classes = {});   // as many lines as it takes
GtkWidget* newButton(const std::string& text, Classes classes, Action action);

/// A button of other widgets, with a name for who cannot see them.
GtkWidget* newButton(GtkWidget* child, const std::string& name, Classes classes, Action action);

/// A scrolled page of limited width in the middle of the window.
GtkWidget* newScrolledPage(GtkWidget* content, int mostWidth);

void append(GtkWidget* box, std::initializer_list<GtkWidget*> children);
void removeChildren(GtkWidget* box);
void setText(GtkWidget* label, const std::string& text);
void setClass(GtkWidget* widget, const char* name, bool present);
void setAccessibleName(GtkWidget* widget, const std::string& name);

/// A widget that a scripted visit presses by this name.
GtkWidget* named(GtkWidget* widget, const std::string& name);

}  // namespace shop
