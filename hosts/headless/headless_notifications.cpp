#include "orbinel/headless/headless_notifications.hpp"

#include <utility>

#include "base/mutex.hpp"
#include "hosts/common/kept_delegate.hpp"

namespace orbinel::headless {

struct HeadlessNotifications::State {
    [[nodiscard]] platform::NotificationSettings read() {
        const MutexLock lock(mutex);
        return settings;
    }

    Mutex mutex;
    platform::NotificationSettings settings ORBINEL_GUARDED_BY(mutex);
    std::optional<std::string> failure ORBINEL_GUARDED_BY(mutex);
    std::vector<std::int32_t> requested ORBINEL_GUARDED_BY(mutex);
    std::size_t registrations ORBINEL_GUARDED_BY(mutex) = 0;

    hosts::KeptDelegate delegate;
};

HeadlessNotifications::HeadlessNotifications() : state_(std::make_unique<State>()) {}
HeadlessNotifications::~HeadlessNotifications() = default;

void HeadlessNotifications::setSettings(platform::NotificationSettings settings) {
    const MutexLock lock(state_->mutex);
    state_->settings = settings;
}

void HeadlessNotifications::setAuthorizationFailure(std::optional<std::string> failure) {
    const MutexLock lock(state_->mutex);
    state_->failure = std::move(failure);
}

std::vector<std::int32_t> HeadlessNotifications::requestedAuthorizations() const {
    const MutexLock lock(state_->mutex);
    return state_->requested;
}

std::size_t HeadlessNotifications::registrations() const {
    const MutexLock lock(state_->mutex);
    return state_->registrations;
}

void HeadlessNotifications::readSettings(std::function<void(platform::NotificationSettings)> completion) noexcept {
    completion(state_->read());
}

void HeadlessNotifications::requestAuthorization(
    std::int32_t options, std::function<void(std::optional<std::string> failure)> completion) noexcept {
    completion([&] {
        const MutexLock lock(state_->mutex);
        state_->requested.push_back(options);
        return state_->failure;
    }());
}

void HeadlessNotifications::registerForRemoteNotifications() noexcept {
    const MutexLock lock(state_->mutex);
    ++state_->registrations;
}

void HeadlessNotifications::setDelegate(std::shared_ptr<platform::Delegate> delegate) noexcept {
    state_->delegate.set(std::move(delegate));
}

std::shared_ptr<platform::Delegate> HeadlessNotifications::delegate() const noexcept { return state_->delegate.get(); }

}  // namespace orbinel::headless
