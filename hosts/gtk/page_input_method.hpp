#pragma once

#include <webkit/webkit.h>

#include <functional>

namespace orbinel::hosts {

/// Told whether a text field inside the page has the keyboard.
using FieldFocused = std::function<void(bool focused)>;

/// An input method for the text fields of a page: the platform's own, which also tells when one gets the keyboard and
/// loses it. The page has to outlive its use, until `detach`.
[[nodiscard]] WebKitInputMethodContext* newPageInputMethod(GtkWidget* page, FieldFocused told);

/// From now on nothing is told and the page is not touched.
void detach(WebKitInputMethodContext* inputMethod);

}  // namespace orbinel::hosts
