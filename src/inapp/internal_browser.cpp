#include "inapp/internal_browser.hpp"

#include <utility>
#include <variant>

#include "base/url.hpp"
#include "inapp/layout_builder.hpp"
#include "inapp/view_tags.hpp"

namespace orbinel {

using platform::NavigationPolicy;

/// The web view and its delegate.
class InternalBrowser::Page final : public platform::WebViewDelegate {
public:
    explicit Page(InternalBrowser& browser) : browser_(browser) {}

    NavigationPolicy decidePolicyForNavigationAction(const platform::NavigationAction& action) noexcept override {
        if (isWebUrl(action.url) || action.url.starts_with("about:")) return NavigationPolicy::allow;
        browser_.needs_.lifetime.whileAlive([&] {
            if (action.linkActivated) return browser_.openOutside(action.url);
            browser_.needs_.reports.note([&] { return "The browser does not go to " + action.url; });
        })();
        return NavigationPolicy::cancel;
    }
    NavigationPolicy decidePolicyForNavigationResponse(const platform::NavigationResponse&) noexcept override {
        return NavigationPolicy::allow;
    }
    void didFinishNavigation() noexcept override {}
    void didFailNavigation(const platform::LoadFailure& failure) noexcept override {
        browser_.needs_.reports.note([&] { return "A page could not be opened: " + failure.description; });
    }
    void contentProcessDidTerminate() noexcept override {}
    void estimatedProgressChanged(double) noexcept override {}
    void didReceiveScriptMessage(const Value&) noexcept override {}
    void wasDrawn(double, double) noexcept override {}

    std::unique_ptr<platform::WebView> webView;

private:
    InternalBrowser& browser_;
};

InternalBrowser::InternalBrowser(const Needs& needs) : needs_(needs) {}
InternalBrowser::~InternalBrowser() { removeViews(); }

bool InternalBrowser::openBrowserUrl(const std::string& url) {
    const auto overlay = needs_.views.overlay();
    auto page = overlay != nullptr ? makePage() : nullptr;
    auto view = needs_.views.makeView(platform::Backdrop::dimmed);
    const auto close = needs_.views.makeCloseButton("Close", needs_.lifetime.whileAlive([this] { this->close(); }));
    if (page == nullptr || view == nullptr || close == nullptr) {
        openOutside(url);
        return false;
    }
    removeViews();
    page_ = std::move(page);
    view_ = std::move(view);
    layOut(*overlay, close);
    needs_.views.setOverlayVisible(true, 0);
    page_->webView->load(url);
    return true;
}

std::shared_ptr<InternalBrowser::Page> InternalBrowser::makePage() {
    auto page = std::make_shared<Page>(*this);
    auto made = needs_.views.makeWebView({}, page);
    if (const auto* reason = std::get_if<std::string>(&made)) {
        needs_.reports.note([&] { return "The page is opened outside: " + *reason; });
        return nullptr;
    }
    page->webView = std::move(std::get<std::unique_ptr<platform::WebView>>(made));
    return page;
}

void InternalBrowser::layOut(platform::View& overlay, const std::shared_ptr<platform::View>& close) {
    using Edge = LayoutBuilder::Edge;
    using Guide = LayoutBuilder::Guide;
    constexpr double bar = 44;  // points, for the close button above the page
    constexpr double inset = 7;
    constexpr double button = 30;

    view_->setTag(kPUSHBROWSERVIEWTAG);
    overlay.addChild(view_);

    const auto page = page_->webView->view();
    view_->addChild(page);
    page->setConstraints(LayoutBuilder()
                             .pin({Edge::left, Edge::right}, Guide::parent)
                             .pin({Edge::top}, Guide::safeArea, bar)
                             .pin({Edge::bottom}, Guide::parent)
                             .constraints());

    close->setTag(kPUSHBROWSERCLOSEBUTTONVIEWTAG);
    view_->addChild(close);
    close->setConstraints(
        LayoutBuilder().pin({Edge::top, Edge::right}, Guide::safeArea, inset).size(button, button).constraints());
}

void InternalBrowser::bringToFront() {
    const auto overlay = needs_.views.overlay();
    if (view_ != nullptr && overlay != nullptr) overlay->addChild(view_);
}

void InternalBrowser::close() {
    // Not while its own button calls.
    needs_.scheduler.postMain(needs_.lifetime.whileAlive([this, closing = view_] {
        if (closing == nullptr || closing != view_) return;
        removeViews();
        if (closed) closed();
    }));
}

void InternalBrowser::removeViews() {
    if (view_ != nullptr) view_->removeFromParent();
    view_.reset();
    page_.reset();
}

void InternalBrowser::openOutside(const std::string& url) {
    if (auto* opening = needs_.urlOpening.get()) opening->openUrl(url, {});
}

}  // namespace orbinel
