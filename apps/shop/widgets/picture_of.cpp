#include "shop/widgets/picture_of.hpp"

#include <memory>

#include "shop/widgets/ui.hpp"

namespace shop {

namespace {

struct NodeUnref {
    void operator()(GskRenderNode* node) const noexcept { gsk_render_node_unref(node); }
};

}  // namespace

bool savePicture(GtkWidget* widget, const std::filesystem::path& file) {
    auto* renderer = gtk_native_get_renderer(gtk_widget_get_native(widget));
    const ObjectPointer<GdkPaintable> paintable(gtk_widget_paintable_new(widget));
    const int width = gdk_paintable_get_intrinsic_width(paintable.get());
    const int height = gdk_paintable_get_intrinsic_height(paintable.get());
    auto* snapshot = gtk_snapshot_new();
    gdk_paintable_snapshot(paintable.get(), snapshot, width, height);
    const std::unique_ptr<GskRenderNode, NodeUnref> node(gtk_snapshot_free_to_node(snapshot));
    if (renderer == nullptr || node == nullptr) return false;
    const graphene_rect_t bounds = GRAPHENE_RECT_INIT(0, 0, static_cast<float>(width), static_cast<float>(height));
    const ObjectPointer<GdkTexture> texture(gsk_renderer_render_texture(renderer, node.get(), &bounds));
    return gdk_texture_save_to_png(texture.get(), file.c_str()) != FALSE;
}

}  // namespace shop
