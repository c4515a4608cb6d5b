#include "inapp/template_layout.hpp"

#include <utility>

#include "base/number_reading.hpp"
#include "inapp/layout_builder.hpp"

namespace orbinel {

namespace {

/// A part of the parent's height; what is none is all of it.
double heldHeight(const Value& value) {
    const auto height = value.number().value_or(1);
    return height > 0 && height < 1 ? height : 1;
}

}  // namespace

TemplateLayout::TemplateLayout(Dictionary templateLayout)
    : source_(std::move(templateLayout)),
      height_(heldHeight(source_["height"])),
      position_(held<std::int32_t>(source_["position"].integer().value_or(0))),
      ignoreSafeZone_(source_["ignoreSafeZone"].truth()) {
    // Positions are numbered like the keys of a telephone: three in a row, from the top.
    if (position_ >= 1 && position_ <= 3) dock_ = Dock::top;
    if (position_ >= 4 && position_ <= 6) dock_ = Dock::middle;
}

TemplateLayout TemplateLayout::adjusted(const Dictionary& templateLayout) const {
    auto source = source_;
    for (const auto* key : {"height", "position", "ignoreSafeZone"}) {
        if (const auto* value = templateLayout.find(key)) source.set(key, *value);
    }
    return TemplateLayout(std::move(source));
}

std::vector<platform::LayoutConstraint> TemplateLayout::constraints() const {
    using Edge = LayoutBuilder::Edge;
    using Guide = LayoutBuilder::Guide;
    const auto guide = ignoreSafeZone_ ? Guide::parent : Guide::safeArea;
    LayoutBuilder place;
    place.pin({Edge::left, Edge::right}, Guide::parent);
    if (isFullHeight()) return place.pin({Edge::top, Edge::bottom}, guide).constraints();
    if (dock_ == Dock::top) place.pin({Edge::top}, guide);
    if (dock_ == Dock::middle) place.centreVertically(guide);
    if (dock_ == Dock::bottom) place.pin({Edge::bottom}, guide);
    return place.height(height_, Guide::parent).constraints();
}

}  // namespace orbinel
