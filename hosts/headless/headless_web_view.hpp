#pragma once

#include <memory>
#include <string>
#include <vector>

#include "hosts/headless/headless_view.hpp"
#include "orbinel/headless/headless_views.hpp"

namespace orbinel::headless {

/// Shared by the web view, which is the library's, and the page, which is the test's.
struct HeadlessPage::State {
    State(std::shared_ptr<Display> shownOn, platform::WebViewSettings given,
          std::weak_ptr<platform::WebViewDelegate> told)
        : display(std::move(shownOn)), settings(std::move(given)), delegate(std::move(told)) {}

    [[nodiscard]] std::shared_ptr<platform::WebViewDelegate> listener() const {
        return alive ? delegate.lock() : nullptr;
    }
    void draw(double width, double height);

    const std::shared_ptr<Display> display;
    const platform::WebViewSettings settings;
    const std::weak_ptr<platform::WebViewDelegate> delegate;
    bool alive = true;
    bool refused = false;  // the delegate let the page not be loaded
    bool finished = false;
    std::string url;
    std::vector<std::string> scripts;
    double drawnWidth = 0;
    double drawnHeight = 0;
};

class HeadlessWebView final : public platform::WebView {
public:
    explicit HeadlessWebView(std::shared_ptr<HeadlessPage::State> page);
    ~HeadlessWebView() override;

    [[nodiscard]] std::shared_ptr<platform::View> view() noexcept override { return view_; }
    void load(const std::string& url) noexcept override;
    void evaluateJavaScript(const std::string& script) noexcept override;

private:
    const std::shared_ptr<HeadlessPage::State> page_;
    const std::shared_ptr<HeadlessView> view_;
};

}  // namespace orbinel::headless
