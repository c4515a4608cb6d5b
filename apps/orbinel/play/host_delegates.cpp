#include "apps/orbinel/play/host_delegates.hpp"

#include <utility>

namespace orbinel::tool {

namespace {

namespace operations = platform::delegate_operations;

/// Those of the scene, or all others.
std::vector<std::string> chosen(const std::vector<std::string>& all, bool ofScene) {
    std::vector<std::string> some;
    for (const auto& operation : all) {
        if ((operation == operations::openUrlContexts) == ofScene) some.push_back(operation);
    }
    return some;
}

}  // namespace

HostDelegates::HostDelegates(const HostDescription& host, Trace& trace)
    : setTwice_(host.setTwice),
      application_(make("ApplicationDelegate", chosen(host.application, false), trace)),
      notifications_(host.notifications ? make("NotificationDelegate", *host.notifications, trace) : application_),
      scene_(make("SceneDelegate", chosen(host.application, true), trace)) {}

HostDelegates::DelegatePointer HostDelegates::make(std::string name, const std::vector<std::string>& operations,
                                                   Trace& trace) {
    const auto type = std::make_shared<platform::DelegateClass>(std::move(name));
    for (const auto& operation : operations) {
        type->addOperation(operation, [operation, &trace](platform::Delegate&, const auto& arguments) {
            trace.write({{"host_called", operation}});
            arguments.completion();
            return true;
        });
    }
    return std::make_shared<platform::Delegate>(type);
}

void HostDelegates::setOn(platform::Application& application, platform::Notifications& notifications) const {
    application.setDelegate(application_);
    if (setTwice_) application.setDelegate(application_);
    notifications.setDelegate(notifications_);
    application.connectScene(scene_);
}

void HostDelegates::deliver(const Delivery& delivery, const platform::Application& application,
                            const platform::Notifications& notifications) const {
    const bool isOfNotifications = delivery.operation == operations::didReceiveNotificationResponse ||
                                   delivery.operation == operations::willPresentNotification;
    const auto delegate = delivery.operation == operations::openUrlContexts ? scene_
                          : isOfNotifications                               ? notifications.delegate()
                                                                            : application.delegate();
    if (delegate != nullptr) delegate->perform(delivery.operation, delivery.arguments);
}

}  // namespace orbinel::tool
