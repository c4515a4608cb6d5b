#include "shop/widgets/toast.hpp"

#include <utility>

#include "shop/widgets/ui.hpp"

namespace shop {

namespace {

constexpr guint milliseconds = 2600;

}  // namespace

Toast::Toast() : text_(newText("", {"toast"})), revealer_(gtk_revealer_new()) {
    gtk_revealer_set_transition_type(GTK_REVEALER(revealer_), GTK_REVEALER_TRANSITION_TYPE_CROSSFADE);
    gtk_revealer_set_child(GTK_REVEALER(revealer_), text_);
    gtk_widget_set_valign(revealer_, GTK_ALIGN_END);
    gtk_widget_set_halign(revealer_, GTK_ALIGN_CENTER);
    gtk_widget_set_can_target(revealer_, FALSE);
}

Toast::~Toast() { stopWaiting(); }

void Toast::say(const std::string& sentence) {
    stopWaiting();
    setText(text_, sentence);
    gtk_revealer_set_reveal_child(GTK_REVEALER(revealer_), TRUE);
    silence_ = g_timeout_add(
        milliseconds,
        [](gpointer self) -> gboolean {
            auto& toast = *static_cast<Toast*>(self);
            toast.silence_ = 0;
            toast.hide();
            return G_SOURCE_REMOVE;
        },
        this);
}

void Toast::hide() {
    stopWaiting();
    gtk_revealer_set_reveal_child(GTK_REVEALER(revealer_), FALSE);
}

void Toast::stopWaiting() {
    if (silence_ != 0) g_source_remove(std::exchange(silence_, 0));
}

}  // namespace shop
