#pragma once

#include <gtk/gtk.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "hosts/gtk/animation.hpp"
#include "hosts/gtk/gobject.hpp"
#include "hosts/gtk/layer.hpp"
#include "orbinel/platform/views.hpp"

namespace orbinel::hosts {

/// A view that is a layer, filled by a board on which GTK's constraint layout places the layers of its children. It may
/// show one other widget below them.
///
/// Threads: main thread only. Children are held by their parent.
class GtkView : public platform::View, public std::enable_shared_from_this<GtkView>, private LayerOwner {
public:
    /// Called with each size, in points, that the layer gets.
    using Resized = std::function<void(int width, int height)>;

    explicit GtkView(platform::Backdrop backdrop);
    ~GtkView() override;
    GtkView(const GtkView&) = delete;
    GtkView& operator=(const GtkView&) = delete;

    void setTag(std::int32_t tag) noexcept override { tag_ = tag; }
    void setAlpha(double alpha) noexcept override;
    void fadeTo(double alpha, double seconds, std::function<void()> completion) noexcept override;
    void addChild(const std::shared_ptr<platform::View>& child) noexcept override;
    void removeFromParent() noexcept override;
    [[nodiscard]] std::shared_ptr<platform::View> findTag(std::int32_t tag) noexcept override;
    void setConstraints(std::vector<platform::LayoutConstraint> constraints) noexcept override;
    void setVerticalOffset(double points, double seconds) noexcept override;
    /// As the constraints say; GTK lays out before it draws its next frame.
    [[nodiscard]] platform::Rectangle frame() const noexcept override;

    [[nodiscard]] GtkWidget* widget() const noexcept { return layer_.get(); }

    /// The widget that fills the view; null takes out the one that does.
    void setContent(GtkWidget* content, Resized resized = nullptr);

private:
    void enteredWindow() noexcept override { arrange(); }
    void layOut(int width, int height) noexcept override;
    void arrange() noexcept;
    [[nodiscard]] bool isBelow(const GtkView& view) const noexcept;
    void arrangeInParent() noexcept;
    void leaveParent() noexcept;

    const ObjectPointer<GtkWidget> layer_;
    const ObjectPointer<GtkWidget> board_;
    ObjectPointer<GtkWidget> content_;
    Resized resized_;
    std::optional<std::int32_t> tag_;
    std::vector<platform::LayoutConstraint> constraints_;
    std::vector<std::shared_ptr<platform::View>> children_;
    GtkView* parent_ = nullptr;
    Animation alpha_;
    Animation offset_;  // points, downwards
};

}  // namespace orbinel::hosts
