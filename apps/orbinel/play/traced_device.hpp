#pragma once

#include <memory>
#include <string>
#include <utility>

#include "apps/orbinel/play/trace.hpp"
#include "platform/forwarding_application.hpp"
#include "platform/forwarding_haptics.hpp"
#include "platform/forwarding_notifications.hpp"
#include "platform/forwarding_pasteboard.hpp"
#include "platform/forwarding_review_prompt.hpp"

/// Services that write into the trace what the library asks of them, and pass it on.
namespace orbinel::tool {

class TracedApplication final : public platform::ForwardingApplication {
public:
    TracedApplication(std::shared_ptr<platform::Application> target, Trace& trace)
        : ForwardingApplication(std::move(target)), trace_(trace) {}

    void openUrl(const std::string& url, std::function<void(bool)> completion) noexcept override {
        trace_.write({{"opened", url}, {"where", "system"}});
        ForwardingApplication::openUrl(url, std::move(completion));
    }
    void openSettings() noexcept override {
        trace_.write({{"opened", Null{}}, {"where", "settings"}});
        ForwardingApplication::openSettings();
    }
    void openNotificationSettings() noexcept override {
        trace_.write({{"opened", Null{}}, {"where", "notification_settings"}});
        ForwardingApplication::openNotificationSettings();
    }

private:
    Trace& trace_;
};

class TracedNotifications final : public platform::ForwardingNotifications {
public:
    TracedNotifications(std::shared_ptr<platform::Notifications> target, Trace& trace)
        : ForwardingNotifications(std::move(target)), trace_(trace) {}

    void requestAuthorization(std::int32_t options,
                              std::function<void(std::optional<std::string>)> completion) noexcept override {
        trace_.write({{"permission_request", options}});
        ForwardingNotifications::requestAuthorization(options, std::move(completion));
    }
    void registerForRemoteNotifications() noexcept override {
        trace_.write({{"registered_for_push", true}});
        ForwardingNotifications::registerForRemoteNotifications();
    }

private:
    Trace& trace_;
};

class TracedPasteboard final : public platform::ForwardingPasteboard {
public:
    TracedPasteboard(std::shared_ptr<platform::Pasteboard> target, Trace& trace)
        : ForwardingPasteboard(std::move(target)), trace_(trace) {}

    void setText(const std::string& text) noexcept override {
        trace_.write({{"pasteboard", text}});
        ForwardingPasteboard::setText(text);
    }

private:
    Trace& trace_;
};

class TracedHaptics final : public platform::ForwardingHaptics {
public:
    TracedHaptics(std::shared_ptr<platform::Haptics> target, Trace& trace)
        : ForwardingHaptics(std::move(target)), trace_(trace) {}

    void impact(std::int32_t style) noexcept override {
        trace_.write({{"haptic", style}});
        ForwardingHaptics::impact(style);
    }

private:
    Trace& trace_;
};

class TracedReviewPrompt final : public platform::ForwardingReviewPrompt {
public:
    TracedReviewPrompt(std::shared_ptr<platform::ReviewPrompt> target, Trace& trace)
        : ForwardingReviewPrompt(std::move(target)), trace_(trace) {}

    void requestReview() noexcept override {
        trace_.write({{"review_prompt", true}});
        ForwardingReviewPrompt::requestReview();
    }

private:
    Trace& trace_;
};

}  // namespace orbinel::tool
