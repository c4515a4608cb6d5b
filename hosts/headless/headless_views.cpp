#include "orbinel/headless/headless_views.hpp"

#include <algorithm>
#include <atomic>
#include <utility>
#include <vector>

#include "hosts/common/callable.hpp"
#include "hosts/headless/headless_view.hpp"
#include "hosts/headless/headless_web_view.hpp"

namespace orbinel::headless {

struct HeadlessViews::State {
    State(std::shared_ptr<platform::Scheduler> scheduler, std::shared_ptr<platform::Device> device)
        : display(std::make_shared<Display>(std::move(scheduler), std::move(device))),
          overlay(std::make_shared<HeadlessView>(display)) {
        display->setRoot(overlay);
    }

    const std::shared_ptr<Display> display;
    const std::shared_ptr<HeadlessView> overlay;
    std::vector<std::shared_ptr<HeadlessPage>> pages;  // of web views that are, but for the last
    std::optional<std::string> refusal;
    bool hasWindow = true;
    std::atomic<bool> keyboardOpen{false};
};

HeadlessViews::HeadlessViews(std::shared_ptr<platform::Scheduler> scheduler, std::shared_ptr<platform::Device> device)
    : state_(std::make_unique<State>(std::move(scheduler), std::move(device))) {}
HeadlessViews::~HeadlessViews() = default;

void HeadlessViews::setKeyboardOpen(bool open) { state_->keyboardOpen = open; }
void HeadlessViews::setHasWindow(bool has) { state_->hasWindow = has; }
void HeadlessViews::setWebViewRefusal(std::optional<std::string> reason) { state_->refusal = std::move(reason); }

std::shared_ptr<HeadlessPage> HeadlessViews::page() const {
    auto& pages = state_->pages;
    const auto alive = std::find_if(pages.rbegin(), pages.rend(), [](const auto& page) { return page->isAlive(); });
    if (alive != pages.rend()) return *alive;
    return pages.empty() ? nullptr : pages.back();
}

std::optional<HeadlessViewFacts> HeadlessViews::view(std::int32_t tag) const {
    std::optional<HeadlessViewFacts> found;
    for (const auto& facts : tree()) {
        if (facts.tag == tag) found = facts;
    }
    return found;
}

std::vector<HeadlessViewFacts> HeadlessViews::tree() const {
    std::vector<HeadlessViewFacts> all;
    if (!state_->hasWindow) return all;
    state_->overlay->walk([&](HeadlessView& view, std::size_t depth) { all.push_back(view.facts(depth)); });
    return all;
}

bool HeadlessViews::tap(std::int32_t tag) {
    std::shared_ptr<HeadlessView> top;
    state_->overlay->walk([&](HeadlessView& view, std::size_t depth) {
        if (view.facts(depth).tag == tag) top = view.shared_from_this();
    });
    return state_->hasWindow && top != nullptr && top->press();
}

bool HeadlessViews::isKeyboardOpen() const noexcept { return state_->keyboardOpen; }

std::shared_ptr<platform::View> HeadlessViews::overlay() noexcept {
    return state_->hasWindow ? state_->overlay : nullptr;
}

void HeadlessViews::setOverlayVisible(bool visible, double seconds) noexcept {
    state_->overlay->fadeTo(visible ? 1 : 0, seconds, {});
}

std::shared_ptr<platform::View> HeadlessViews::makeView(platform::Backdrop) noexcept {
    return std::make_shared<HeadlessView>(state_->display);
}

std::shared_ptr<platform::View> HeadlessViews::makeCloseButton(std::string, std::function<void()> pressed) noexcept {
    const auto button = std::make_shared<HeadlessView>(state_->display);
    button->setPressed(hosts::callable(std::move(pressed)));
    return button;
}

platform::WebViewOrReason HeadlessViews::makeWebView(platform::WebViewSettings settings,
                                                     std::weak_ptr<platform::WebViewDelegate> delegate) noexcept {
    if (state_->refusal) return *state_->refusal;
    auto page = std::make_shared<HeadlessPage::State>(state_->display, std::move(settings), std::move(delegate));
    std::erase_if(state_->pages, [](const auto& earlier) { return !earlier->isAlive(); });
    state_->pages.push_back(std::make_shared<HeadlessPage>(page));
    return std::make_unique<HeadlessWebView>(std::move(page));
}

}  // namespace orbinel::headless
