#include "inapp/template_view.hpp"

#include <utility>

#include "base/value_content.hpp"
#include "base/whole_number.hpp"
#include "inapp/layout_builder.hpp"
#include "inapp/view_tags.hpp"

namespace orbinel {

using platform::View;

namespace {

constexpr double closeButtonInset = 8;  // points, as the size
constexpr double closeButtonSize = 30;

}  // namespace

TemplateView::TemplateView(platform::Views& views, PresentedInapp::Record given, const InappLayout& asked)
    : record(std::move(given)),
      content(dictionaryOrEmpty((*record)["content"])),
      layout(asked),
      namesAPage(!content["image"].stringOrEmpty().empty() || !content["template_url"].stringOrEmpty().empty()),
      isCustomScreen(int32Of(content["type"]) == kCUSTOMSREEN),
      views_(views),
      place_(dictionaryOrEmpty(content["template_layout"])) {}

TemplateView::~TemplateView() {
    if (webView != nullptr) webView->end();  // a host may hold the delegate for longer
    takeDown();
}

bool TemplateView::putUp(std::function<void()> close) {
    const auto window = views_.overlay();
    auto container = views_.makeView(platform::Backdrop::clear);
    const auto button = views_.makeCloseButton("Close", std::move(close));
    if (window == nullptr || container == nullptr || button == nullptr) return false;
    container_ = std::move(container);
    container_->setTag(kINAPPVIEWTAG);
    container_->setAlpha(0);
    createCustomBase(*window);
    window->addChild(container_);
    container_->setConstraints(place_.constraints());
    webView->addTo(*container_);
    addCloseButton(button);
    return true;
}

/// Without a view that dims, the message is shown all the same.
void TemplateView::createCustomBase(View& window) {
    if (overlay_ != nullptr) overlay_->removeFromParent();
    overlay_ = place_.dimsTheRest() ? views_.makeView(platform::Backdrop::dimmed) : nullptr;
    if (overlay_ == nullptr) return;
    overlay_->setTag(kOVERLAYTAG);
    overlay_->setAlpha(0);
    window.addChild(overlay_);
}

void TemplateView::addCloseButton(const std::shared_ptr<View>& button) {
    using Edge = LayoutBuilder::Edge;
    button->setTag(kBUTTONVIEWTAG);
    button->setConstraints(LayoutBuilder()
                               .pin({Edge::top, Edge::right}, LayoutBuilder::Guide::safeArea, closeButtonInset)
                               .size(closeButtonSize, closeButtonSize)
                               .constraints());
    container_->addChild(button);
}

void TemplateView::fadeIn() {
    if (overlay_ != nullptr) overlay_->fadeTo(1, kANIMATIONDURATION, [] {});
    container_->fadeTo(1, kANIMATIONDURATION, [] {});
}

void TemplateView::fadeOut(std::function<void()> completion) {
    if (overlay_ != nullptr) overlay_->fadeTo(0, kANIMATIONDURATION, [] {});
    container_->fadeTo(0, kANIMATIONDURATION, std::move(completion));
}

void TemplateView::adjust(const Dictionary& templateLayout, View& window) {
    place_ = place_.adjusted(templateLayout);
    createCustomBase(window);
    window.addChild(container_);  // back on top of what dims
    if (overlay_ != nullptr && stage == Stage::shown) overlay_->setAlpha(1);
    container_->setConstraints(place_.constraints());
}

void TemplateView::takeDown() {
    for (auto* view : {&overlay_, &container_}) {
        if (const auto leaving = std::exchange(*view, nullptr)) leaving->removeFromParent();
    }
}

PresentedView TemplateView::presented() const {
    return {url, inappFieldText(*record, "inapp_id"),
            container_ != nullptr ? container_->frame() : platform::Rectangle()};
}

}  // namespace orbinel
