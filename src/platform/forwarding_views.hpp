#pragma once

#include <memory>
#include <utility>

#include "orbinel/platform/views.hpp"

namespace orbinel::platform {

/// Hands every call on to another service of views; derive from it to change one method.
class ForwardingViews : public Views {
public:
    explicit ForwardingViews(std::shared_ptr<Views> target) : target_(std::move(target)) {}

    bool isKeyboardOpen() const noexcept override { return target_->isKeyboardOpen(); }
    std::shared_ptr<View> overlay() noexcept override { return target_->overlay(); }
    void setOverlayVisible(bool visible, double seconds) noexcept override {
        target_->setOverlayVisible(visible, seconds);
    }
    std::shared_ptr<View> makeView(Backdrop backdrop) noexcept override { return target_->makeView(backdrop); }
    std::shared_ptr<View> makeCloseButton(std::string accessibleName, std::function<void()> pressed) noexcept override {
        return target_->makeCloseButton(std::move(accessibleName), std::move(pressed));
    }
    WebViewOrReason makeWebView(WebViewSettings settings, std::weak_ptr<WebViewDelegate> delegate) noexcept override {
        return target_->makeWebView(std::move(settings), std::move(delegate));
    }

protected:
    const std::shared_ptr<Views> target_;
};

}  // namespace orbinel::platform
