#include "apps/orbinel/play/gtk/window_picture.hpp"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <vector>

namespace orbinel::tool {

namespace {

struct NodeUnref {
    void operator()(GskRenderNode* node) const noexcept { gsk_render_node_unref(node); }
};

std::vector<guchar> pixelsOf(GdkTexture* texture) {
    const auto stride = static_cast<std::size_t>(gdk_texture_get_width(texture)) * 4;
    std::vector<guchar> pixels(stride * static_cast<std::size_t>(gdk_texture_get_height(texture)));
    gdk_texture_download(texture, pixels.data(), stride);
    return pixels;
}

}  // namespace

hosts::ObjectPointer<GdkTexture> pictureOf(GtkWidget* widget) {
    auto* native = gtk_widget_get_native(widget);
    auto* renderer = native != nullptr ? gtk_native_get_renderer(native) : nullptr;
    if (renderer == nullptr) return nullptr;
    const hosts::ObjectPointer<GdkPaintable> paintable(gtk_widget_paintable_new(widget));
    const int width = gdk_paintable_get_intrinsic_width(paintable.get());
    const int height = gdk_paintable_get_intrinsic_height(paintable.get());
    auto* snapshot = gtk_snapshot_new();
    gdk_paintable_snapshot(paintable.get(), snapshot, width, height);
    const std::unique_ptr<GskRenderNode, NodeUnref> node(gtk_snapshot_free_to_node(snapshot));
    if (node == nullptr) return nullptr;
    const graphene_rect_t bounds = GRAPHENE_RECT_INIT(0, 0, static_cast<float>(width), static_cast<float>(height));
    return hosts::ObjectPointer<GdkTexture>(gsk_renderer_render_texture(renderer, node.get(), &bounds));
}

bool isSeen(GdkTexture* picture) {
    if (picture == nullptr) return false;
    const auto pixels = pixelsOf(picture);  // premultiplied: what cannot be seen is zero
    return std::any_of(pixels.begin(), pixels.end(), [](guchar byte) { return byte != 0; });
}

bool areEqual(GdkTexture* one, GdkTexture* other) {
    return one != nullptr && other != nullptr && pixelsOf(one) == pixelsOf(other);
}

}  // namespace orbinel::tool
