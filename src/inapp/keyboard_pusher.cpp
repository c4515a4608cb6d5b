#include "inapp/keyboard_pusher.hpp"

#include <algorithm>
#include <utility>

#include "inapp/view_tags.hpp"

namespace orbinel {

bool KeyboardPusher::shouldKeyboardPushInAppForInAppType(const InappLayout& layout) noexcept {
    constexpr std::int32_t pushedStyle = 4;
    constexpr std::int32_t pushedPosition = 7;
    return layout.type == kCUSTOMSREEN && layout.layoutStyle == pushedStyle && layout.position == pushedPosition &&
           layout.notFullHeight;
}

void KeyboardPusher::registerForInAppPusherKeyboardNotifications(std::shared_ptr<platform::View> view,
                                                                 std::function<void()> moving) {
    view_ = std::move(view);
    moving_ = std::move(moving);
    willShow_ = needs_.notificationCentre.addObserver(platform::notification_names::keyboardWillShow,
                                                      needs_.lifetime.whileAlive([this](const Dictionary& info) {
                                                          pushInAppUp(info["height"].number().value_or(0));
                                                      }));
    willHide_ = needs_.notificationCentre.addObserver(
        platform::notification_names::keyboardWillHide,
        needs_.lifetime.whileAlive([this](const Dictionary&) { pullInAppBack(); }));
}

void KeyboardPusher::unregisterForInAppPusherKeyboardNotifications() {
    willShow_.cancel();
    willHide_.cancel();
    view_.reset();
    moving_ = nullptr;
}

void KeyboardPusher::pushInAppUp(double keyboardHeight) {
    constexpr double farthest = 10'000;  // points; a host may say anything
    moveTo(-std::clamp(keyboardHeight, 0.0, farthest));
}

void KeyboardPusher::pullInAppBack() { moveTo(0); }

void KeyboardPusher::moveTo(double offset) {
    if (view_ == nullptr) return;
    view_->setVerticalOffset(offset, kANIMATIONDURATION);
    if (moving_) moving_();
}

}  // namespace orbinel
