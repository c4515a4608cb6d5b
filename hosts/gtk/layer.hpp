#pragma once

#include <gtk/gtk.h>

namespace orbinel::hosts {

/// What a layer asks while GTK lays it out.
class LayerOwner {
public:
    virtual ~LayerOwner() = default;

    /// The layer has come into a window.
    virtual void enteredWindow() noexcept = 0;

    /// The layer has this size now; gives what is in it theirs.
    virtual void layOut(int width, int height) noexcept = 0;
};

/// A widget without a size of its own, which its owner lays out, or a layout manager where it has one (and then no
/// owner). A clear
/// one draws nothing and lets a click through where no child is; a dimmed one is half-transparent black and keeps
/// clicks to itself.
///
/// The owner lets go of it (`forgetOwner`) and takes its children out before it goes.
[[nodiscard]] GtkWidget* newLayer(LayerOwner* owner, bool dimmed);

void forgetOwner(GtkWidget* layer);

}  // namespace orbinel::hosts
