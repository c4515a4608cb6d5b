#pragma once

#include <functional>
#include <string>

#include "hosts/gtk/gtk_view.hpp"

namespace orbinel::hosts {

/// A round button with a cross.
class CloseButton final : public GtkView {
public:
    CloseButton(const std::string& accessibleName, std::function<void()> pressed);

private:
    static void clicked(GtkButton* button, gpointer self) noexcept;

    const std::function<void()> pressed_;
    SignalConnections<CloseButton> signals_{*this};
};

}  // namespace orbinel::hosts
