#pragma once

#include <gtk/gtk.h>

#include "hosts/gtk/gobject.hpp"
#include "orbinel/platform/pasteboard.hpp"

namespace orbinel::hosts {

/// The display's clipboard. Text ends at its first zero byte.
class GtkPasteboard final : public platform::Pasteboard {
public:
    void setText(const std::string& text) noexcept override {
        auto* display = gdk_display_get_default();
        if (display == nullptr) return;
        const TextPointer valid(g_utf8_make_valid(text.data(), static_cast<gssize>(text.size())));
        gdk_clipboard_set_text(gdk_display_get_clipboard(display), valid.get());
    }
};

}  // namespace orbinel::hosts
