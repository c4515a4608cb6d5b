#pragma once

#include <memory>
#include <string>
#include <utility>

#include "orbinel/platform/views.hpp"

namespace orbinel::platform {

/// Hands every call on to another web view; derive from it to change one method.
class ForwardingWebView : public WebView {
public:
    explicit ForwardingWebView(std::unique_ptr<WebView> target) : target_(std::move(target)) {}

    std::shared_ptr<View> view() noexcept override { return target_->view(); }
    void load(const std::string& url) noexcept override { target_->load(url); }
    void evaluateJavaScript(const std::string& script) noexcept override { target_->evaluateJavaScript(script); }

protected:
    const std::unique_ptr<WebView> target_;
};

}  // namespace orbinel::platform
