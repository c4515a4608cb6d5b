#include "hosts/gtk/page_input_method.hpp"

#include <gtk/gtk.h>

#include <utility>

#include "hosts/gtk/gobject.hpp"

namespace orbinel::hosts {

namespace {

/// What the GObject owns; made and deleted with it.
struct State {
    ObjectPointer<GtkIMContext> platform;
    GtkWidget* page = nullptr;
    FieldFocused told;
};

struct PageInputMethod {
    WebKitInputMethodContext context;
    State* state;
};

State& stateOf(gpointer inputMethod) { return *static_cast<PageInputMethod*>(inputMethod)->state; }

GtkIMContext* platformOf(gpointer inputMethod) { return stateOf(inputMethod).platform.get(); }

// --- From the page to the platform ---

void notifyFocusIn(WebKitInputMethodContext* self) noexcept {
    auto& state = stateOf(self);
    gtk_im_context_set_client_widget(state.platform.get(), state.page);
    gtk_im_context_focus_in(state.platform.get());
    if (state.told) state.told(true);
}

void notifyFocusOut(WebKitInputMethodContext* self) noexcept {
    auto& state = stateOf(self);
    gtk_im_context_focus_out(state.platform.get());
    if (state.told) state.told(false);
}

gboolean filterKeyEvent(WebKitInputMethodContext* self, GdkEvent* event) noexcept {
    return gtk_im_context_filter_keypress(platformOf(self), event);
}

void setEnablePreedit(WebKitInputMethodContext* self, gboolean enabled) noexcept {
    gtk_im_context_set_use_preedit(platformOf(self), enabled);
}

void getPreedit(WebKitInputMethodContext* self, gchar** text, GList** underlines, guint* cursor) noexcept {
    char* preedit = nullptr;
    int position = 0;
    gtk_im_context_get_preedit_string(platformOf(self), &preedit, nullptr, &position);
    const auto length = static_cast<guint>(g_utf8_strlen(preedit, -1));
    if (underlines != nullptr) {
        *underlines = length > 0 ? g_list_append(nullptr, webkit_input_method_underline_new(0, length)) : nullptr;
    }
    if (cursor != nullptr) *cursor = static_cast<guint>(position);
    if (text != nullptr) *text = std::exchange(preedit, nullptr);
    g_free(preedit);
}

void notifyCursorArea(WebKitInputMethodContext* self, int x, int y, int width, int height) noexcept {
    const GdkRectangle area{x, y, width, height};
    gtk_im_context_set_cursor_location(platformOf(self), &area);
}

void notifySurrounding(WebKitInputMethodContext* self, const gchar* text, guint length, guint cursor,
                       guint selection) noexcept {
    gtk_im_context_set_surrounding_with_selection(platformOf(self), text, static_cast<int>(length),
                                                  static_cast<int>(cursor), static_cast<int>(selection));
}

void reset(WebKitInputMethodContext* self) noexcept { gtk_im_context_reset(platformOf(self)); }

GtkInputPurpose platformPurpose(WebKitInputPurpose purpose) {
    switch (purpose) {
        case WEBKIT_INPUT_PURPOSE_DIGITS:
            return GTK_INPUT_PURPOSE_DIGITS;
        case WEBKIT_INPUT_PURPOSE_NUMBER:
            return GTK_INPUT_PURPOSE_NUMBER;
        case WEBKIT_INPUT_PURPOSE_PHONE:
            return GTK_INPUT_PURPOSE_PHONE;
        case WEBKIT_INPUT_PURPOSE_URL:
            return GTK_INPUT_PURPOSE_URL;
        case WEBKIT_INPUT_PURPOSE_EMAIL:
            return GTK_INPUT_PURPOSE_EMAIL;
        case WEBKIT_INPUT_PURPOSE_PASSWORD:
            return GTK_INPUT_PURPOSE_PASSWORD;
        case WEBKIT_INPUT_PURPOSE_FREE_FORM:
            break;
    }
    return GTK_INPUT_PURPOSE_FREE_FORM;
}

void purposeChanged(WebKitInputMethodContext* self, GParamSpec* /*property*/, gpointer /*data*/) noexcept {
    const auto purpose = platformPurpose(webkit_input_method_context_get_input_purpose(self));
    g_object_set(platformOf(self), "input-purpose", purpose, nullptr);
}

// --- From the platform to the page ---

void preeditStarted(GtkIMContext* /*platform*/, gpointer self) noexcept {
    g_signal_emit_by_name(self, "preedit-started");
}
void preeditChanged(GtkIMContext* /*platform*/, gpointer self) noexcept {
    g_signal_emit_by_name(self, "preedit-changed");
}
void preeditFinished(GtkIMContext* /*platform*/, gpointer self) noexcept {
    g_signal_emit_by_name(self, "preedit-finished");
}
void committed(GtkIMContext* /*platform*/, const char* text, gpointer self) noexcept {
    g_signal_emit_by_name(self, "committed", text);
}
gboolean deleteSurrounding(GtkIMContext* /*platform*/, int offset, int count, gpointer self) noexcept {
    g_signal_emit_by_name(self, "delete-surrounding", offset, count);
    return TRUE;
}

void initialiseInstance(GTypeInstance* instance, gpointer /*type*/) noexcept {
    auto* self = reinterpret_cast<PageInputMethod*>(instance);
    self->state = new State;
    self->state->platform.reset(gtk_im_multicontext_new());
    const auto connect = [self](const char* signal, GCallback handler) {
        g_signal_connect_object(self->state->platform.get(), signal, handler, self, GConnectFlags{});
    };
    connect("preedit-start", G_CALLBACK(&preeditStarted));
    connect("preedit-changed", G_CALLBACK(&preeditChanged));
    connect("preedit-end", G_CALLBACK(&preeditFinished));
    connect("commit", G_CALLBACK(&committed));
    connect("delete-surrounding", G_CALLBACK(&deleteSurrounding));
    g_signal_connect(self, "notify::input-purpose", G_CALLBACK(&purposeChanged), nullptr);
}

void finalise(GObject* object) noexcept {
    delete reinterpret_cast<PageInputMethod*>(object)->state;
    G_OBJECT_CLASS(g_type_class_peek(WEBKIT_TYPE_INPUT_METHOD_CONTEXT))->finalize(object);
}

void initialiseClass(gpointer type, gpointer /*data*/) noexcept {
    G_OBJECT_CLASS(type)->finalize = &finalise;
    auto* context = WEBKIT_INPUT_METHOD_CONTEXT_CLASS(type);
    context->set_enable_preedit = &setEnablePreedit;
    context->get_preedit = &getPreedit;
    context->filter_key_event = &filterKeyEvent;
    context->notify_focus_in = &notifyFocusIn;
    context->notify_focus_out = &notifyFocusOut;
    context->notify_cursor_area = &notifyCursorArea;
    context->notify_surrounding = &notifySurrounding;
    context->reset = &reset;
}

GType inputMethodType() {
    static const GType type = g_type_register_static_simple(WEBKIT_TYPE_INPUT_METHOD_CONTEXT, "OrbinelPageInputMethod",
                                                            sizeof(WebKitInputMethodContextClass), &initialiseClass,
                                                            sizeof(PageInputMethod), &initialiseInstance, GTypeFlags{});
    return type;
}

}  // namespace

WebKitInputMethodContext* newPageInputMethod(GtkWidget* page, FieldFocused told) {
    auto* context = WEBKIT_INPUT_METHOD_CONTEXT(g_object_new(inputMethodType(), nullptr));
    stateOf(context).page = page;
    stateOf(context).told = std::move(told);
    return context;
}

void detach(WebKitInputMethodContext* inputMethod) {
    auto& state = stateOf(inputMethod);
    state.told = nullptr;
    state.page = nullptr;
    gtk_im_context_set_client_widget(state.platform.get(), nullptr);
}

}  // namespace orbinel::hosts
