#pragma once

#include <string>
#include <utility>

#include "orbinel/platform/accelerometer.hpp"
#include "orbinel/platform/haptics.hpp"
#include "orbinel/platform/pasteboard.hpp"
#include "orbinel/platform/review_prompt.hpp"
#include "orbinel/platform/views.hpp"

/// The services of a device with nothing to show or feel on: absent, at once.
namespace orbinel::hosts {

class NoViews final : public platform::Views {
public:
    [[nodiscard]] bool isKeyboardOpen() const noexcept override { return false; }
    [[nodiscard]] std::shared_ptr<platform::View> overlay() noexcept override { return nullptr; }
    void setOverlayVisible(bool, double) noexcept override {}
    [[nodiscard]] std::shared_ptr<platform::View> makeView(platform::Backdrop) noexcept override { return nullptr; }
    [[nodiscard]] std::shared_ptr<platform::View> makeCloseButton(std::string,
                                                                  std::function<void()>) noexcept override {
        return nullptr;
    }
    [[nodiscard]] platform::WebViewOrReason makeWebView(platform::WebViewSettings,
                                                        std::weak_ptr<platform::WebViewDelegate>) noexcept override {
        return "The application has no window.";
    }
};

class NoAccelerometer final : public platform::Accelerometer {
public:
    [[nodiscard]] bool isAvailable() const noexcept override { return false; }
    [[nodiscard]] platform::Ticket start(std::chrono::milliseconds,
                                         std::function<void(const platform::AccelerationOrReason&)>) noexcept override {
        return {};
    }
};

class NoHaptics final : public platform::Haptics {
public:
    void impact(std::int32_t) noexcept override {}
};

class NoPasteboard final : public platform::Pasteboard {
public:
    void setText(const std::string&) noexcept override {}
};

class NoReviewPrompt final : public platform::ReviewPrompt {
public:
    void requestReview() noexcept override {}
};

}  // namespace orbinel::hosts
